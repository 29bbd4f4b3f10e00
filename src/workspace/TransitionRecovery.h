// The ten seconds after sleep, lock or a session switch in which windows come back one by one and are put back into
// their tiles, each once.
#pragma once

#include "support/MainQueue.h"
#include "windowing/ScreenServicing.h"
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
    /// At the end of a transition: starts the ten seconds of recovery.
    void begin(Seconds uptime);
    /// Nothing is awaited any more.
    void clear();

    /// True from `begin` until just before the deadline.
    bool isActive(Seconds uptime) const { return deadline_ && uptime < *deadline_; }
    bool hasDeadline() const { return deadline_.has_value(); }

    /// Windows that have come back under another identifier. The record is updated to the new ids; the caller moves the
    /// assignments.
    std::vector<WindowSuccessor> takeSuccessors(const std::vector<ManagedWindow>& liveWindows,
                                                const TileAssignments& assignments);
    /// Windows that front a tile, are live again and not yet put back; they count as put back from now on.
    std::vector<std::string> takeRecovered(const std::vector<ManagedWindow>& liveWindows,
                                           const TileAssignments& assignments);
    /// All assigned and stacked windows have returned, or none was assigned.
    bool isComplete(const TileAssignments& assignments) const;
    /// Remembered windows that have not come back yet.
    std::set<std::string> awaitedWindowIDs() const;

    // Displays at the beginning of the transition, and how long it lasted
    void noteScreens(std::vector<Screen> screens) { screensBefore_ = std::move(screens); }
    bool hasOtherScreens(const std::vector<Screen>& now) const { return now != screensBefore_; }
    UnseenTime& unseenTime() { return unseenTime_; }

    /// Something here waits for time to pass, or for the session to be unlocked.
    bool isWaiting() const { return hasDeadline() || detectedLockedLoginSession; }

    bool detectedLockedLoginSession = false;

  private:
    void noteReturned(const std::vector<ManagedWindow>& liveWindows);

    std::optional<Seconds> deadline_;
    std::set<std::string> recoveredWindowIDs_;
    std::vector<ManagedWindowRecoveryIdentity> identities_;
    std::set<std::string> returnedWindowIDs_; // seen again, in front or behind
    std::set<std::string> knownWindowIDs_;    // live before the transition, so not a renamed window
    std::vector<Screen> screensBefore_;
    UnseenTime unseenTime_;
};

} // namespace kova
