// The ten seconds after sleep, lock or a session switch in which windows come back one by one and are put back into
// their tiles, each once.
#pragma once

#include "support/MainQueue.h"
#include "windowing/ManagedWindow.h"
#include "workspace/TileAssignments.h"

#include <optional>
#include <set>
#include <string>
#include <vector>

namespace kova {

/// What is remembered of an assigned window when the desktop goes away.
struct ManagedWindowRecoveryIdentity {
    std::string id;
    pid_t processIdentifier = 0;
    std::optional<std::string> bundleIdentifier;
    std::string title;
    std::optional<CGRect> frame; // window-service space
    bool operator==(const ManagedWindowRecoveryIdentity&) const = default;
};

class TransitionRecovery {
  public:
    static constexpr Seconds kDuration{10};

    /// The desktop goes away: remembers the assigned live windows, in their order.
    void remember(const std::vector<ManagedWindow>& liveWindows, const TileAssignments& assignments);
    /// The desktop is back.
    void begin(Seconds uptime);
    /// Nothing is awaited any more.
    void clear();

    /// True from `begin` until the deadline; the moment of the deadline is outside.
    bool isActive(Seconds uptime) const { return deadline_ && uptime < *deadline_; }
    bool hasDeadline() const { return deadline_.has_value(); }

    /// Windows that are live again and not yet put back; they count as put back from now on.
    std::vector<std::string> takeRecovered(const std::vector<ManagedWindow>& liveWindows,
                                           const TileAssignments& assignments);
    /// Every assigned window is back, or nothing is assigned.
    bool isComplete(const TileAssignments& assignments) const;
    /// Remembered windows that have not come back yet.
    std::set<std::string> awaitedWindowIDs() const;

    bool detectedLockedLoginSession = false;

  private:
    std::optional<Seconds> deadline_;
    std::set<std::string> recoveredWindowIDs_;
    std::vector<ManagedWindowRecoveryIdentity> identities_;
};

} // namespace kova
