// Remembers the windows in tiles during sleep, lock or a session switch, and finds those that return within ten seconds
// after it. Always true: a window is placed at most once per recovery. A window that was listed again is not awaited
// any more. Only a window that was not live before the transition can be recognized as a missing window.
#pragma once

#include "support/MainQueue.h"
#include "windowing/ScreenServicing.h"
#include "workspace/PollContext.h"
#include "workspace/TileAssignments.h"
#include "workspace/UnseenTime.h"
#include "workspace/WindowRecognition.h"

#include <optional>
#include <set>
#include <string>
#include <vector>

namespace kova {

class TransitionRecovery {
  public:
    static constexpr Seconds kDuration{10};

    /// Call at the beginning of a transition. Remembers the live front windows in the order of the list, then the
    /// stacked windows. Windows that have been missing since an earlier transition stay remembered.
    void remember(const std::vector<ManagedWindow>& liveWindows, const TileAssignments& assignments);
    /// Call at the end of a transition. Starts the ten seconds of recovery.
    void begin(Seconds uptime);
    /// Ends the recovery and forgets all remembered windows.
    void clear();

    /// True from `begin` until just before the deadline.
    bool isActive(Seconds uptime) const { return deadline_ && uptime < *deadline_; }
    bool hasDeadline() const { return deadline_.has_value(); }

    /// Windows that have returned under another id. They are remembered by their new ids from now on; the caller
    /// renames them in the assignments.
    std::vector<WindowSuccessor> takeSuccessors(const std::vector<ManagedWindow>& liveWindows,
                                                const TileAssignments& assignments);
    /// Front windows that have returned and were not placed yet; marks them as placed.
    std::vector<WindowID> takeRecovered(const std::vector<ManagedWindow>& liveWindows,
                                        const TileAssignments& assignments);
    /// True if every front window has returned and no remembered window of a tile or stack is still missing.
    bool isComplete(const TileAssignments& assignments) const;
    /// Remembered windows that have not returned yet.
    std::set<WindowID> awaitedWindowIDs() const;

    // The displays at the beginning of the transition, and how long the transition lasted
    void noteScreens(std::vector<Screen> screens) { screensBefore_ = std::move(screens); }
    bool hasOtherScreens(const std::vector<Screen>& now) const { return now != screensBefore_; }
    /// The same as `UnseenTime::begin` and `end`.
    void beginUnseenTime(Seconds now) { unseenTime_.begin(now); }
    Seconds endUnseenTime(Seconds now) { return unseenTime_.end(now); }
    /// Records whether a poll has found the login session locked. There may have been no event for this.
    void noteLocked(bool isLocked) { isLocked_ = isLocked; }
    bool isLocked() const { return isLocked_; }

    /// True if polls must continue until a deadline has passed or the login session is unlocked.
    bool isWaiting() const { return hasDeadline() || isLocked_; }

    void rename(const WindowID& windowID, const WindowID& newID);
    void renameDisplay(const DisplayID&, const DisplayID&) {} // `screensBefore_` keeps the former ids
    void onPoll(const PollContext&) {}                        // the recovery ends at its deadline

  private:
    void noteReturned(const std::vector<ManagedWindow>& liveWindows);

    std::optional<Seconds> deadline_;
    std::set<WindowID> recoveredWindowIDs_; // placed in this recovery
    std::vector<ManagedWindowRecoveryIdentity> identities_;
    std::set<WindowID> returnedWindowIDs_; // listed again since the transition
    std::set<WindowID> knownWindowIDs_;    // live before the transition, therefore no successors of missing windows
    std::vector<Screen> screensBefore_;
    UnseenTime unseenTime_;
    bool isLocked_ = false;
};

} // namespace kova
