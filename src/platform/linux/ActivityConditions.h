// Computes from several sources whether a Linux session is asleep, inactive or locked. Each desktop has only some of
// the sources. Free functions over values.
#pragma once

#include "windowing/SystemActivityServicing.h"

#include <set>
#include <string>
#include <vector>

namespace kova {

/// The last report of each source. The defaults apply to a source that has not reported yet or is disconnected.
struct ActivityFacts {
    bool isPreparingForSleep = false;
    bool isSessionActive = true;
    /// logind's LockedHint: the desktop reports that the session is locked.
    bool isLockedHintSet = false;
    /// A lock was requested and is not confirmed yet.
    bool isLockAwaited = false;
    std::set<std::string> activeScreenSavers;

    bool operator==(const ActivityFacts&) const = default;
};

/// logind's Lock signal is a request, which desktops confirm by the LockedHint or by their screen saver. A screen
/// locker that does neither would never report the unlock. Therefore an unconfirmed lock counts for a limited time
/// only.
ActivityFacts afterLockSignal(ActivityFacts facts);
/// logind's Unlock signal is a request to the desktop, which reports when it has unlocked. Therefore the signal itself
/// only ends an unconfirmed lock.
ActivityFacts afterUnlockSignal(ActivityFacts facts);
ActivityFacts afterLockedHint(ActivityFacts facts, bool isSet);
ActivityFacts afterScreenSaver(ActivityFacts facts, const std::string& name, bool isActive);
/// Resets everything that logind has reported.
ActivityFacts withoutLogind(ActivityFacts facts);

/// An active screen saver counts as a lock: it covers the windows, and most desktops lock with it.
bool isLocked(const ActivityFacts& facts);

/// The events that lead from `before` to `after`, in the order of the enumeration.
std::vector<SystemActivityEvent> eventsBetween(const ActivityFacts& before, const ActivityFacts& after);

} // namespace kova
