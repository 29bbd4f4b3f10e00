// The ten seconds after sleep, lock or a session switch in which returning windows are put into their tiles. Always
// true: a window is placed at most once per recovery; a window that was listed again is not awaited any more, and only
// windows that were not known before the transition can take the place of a missing one.
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

    /// At the beginning of a transition: remembers the assigned live windows in list order, then the stacked ones.
    /// Windows still missing from an earlier suspension stay in the list.
    void remember(const std::vector<ManagedWindow>& liveWindows, const TileAssignments& assignments);
    /// At the end of a transition (uptime): starts the ten seconds of recovery.
    void begin(Seconds uptime);
    /// Forgets all awaited windows.
    void clear();

    /// True from `begin` until just before the deadline.
    bool isActive(Seconds uptime) const { return deadline_ && uptime < *deadline_; }
    bool hasDeadline() const { return deadline_.has_value(); }

    /// Windows that have returned under another id. The record is updated to the new ids; the caller renames the
    /// windows in the assignments.
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
    /// A poll has found the login session locked, which no event may have announced.
    void noteLocked(bool isLocked) { isLocked_ = isLocked; }
    bool isLocked() const { return isLocked_; }

    /// Whether a timeout or the unlock of the session is pending, so that polls must continue.
    bool isWaiting() const { return hasDeadline() || isLocked_; }

    void rename(const WindowID& windowID, const WindowID& newID);
    void renameDisplay(const DisplayID&, const DisplayID&) {} // the former screens are compared with their former ids
    void onPoll(const PollContext&) {}                        // ends by its deadline

  private:
    void noteReturned(const std::vector<ManagedWindow>& liveWindows);

    std::optional<Seconds> deadline_;
    std::set<WindowID> recoveredWindowIDs_;
    std::vector<ManagedWindowRecoveryIdentity> identities_;
    std::set<WindowID> returnedWindowIDs_; // listed again, in front or stacked
    std::set<WindowID> knownWindowIDs_;    // live before the transition; they cannot be renamed windows
    std::vector<Screen> screensBefore_;
    UnseenTime unseenTime_;
    bool isLocked_ = false;
};

} // namespace kova
