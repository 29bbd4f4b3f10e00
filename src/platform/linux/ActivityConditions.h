// When is a Linux session asleep, inactive or locked? Several sources tell, each in its own words and not each of
// them on every desktop; here they become the conditions of the workspace. Values and arithmetic only.
#pragma once

#include "windowing/SystemActivityServicing.h"

#include <set>
#include <string>
#include <vector>

namespace kova {

/// What was heard last of each source; at first, and of a source that is gone, that all is well.
struct ActivityFacts {
    bool isPreparingForSleep = false;
    bool isSessionActive = true;
    /// The desktop has told logind that it is locked.
    bool isLockedHintSet = false;
    /// A lock was requested and is not confirmed yet.
    bool isLockAwaited = false;
    std::set<std::string> activeScreenSavers;

    bool operator==(const ActivityFacts&) const = default;
};

/// logind's Lock signal is a request. Desktops confirm it by the hint or by their screen saver; some screen lockers do
/// neither, and then nothing would ever tell of the unlocking. So an unconfirmed lock counts, but not for long.
ActivityFacts afterLockSignal(ActivityFacts facts);
/// logind's Unlock signal asks the desktop to unlock, which tells when it has. Only an unconfirmed lock ends at once.
ActivityFacts afterUnlockSignal(ActivityFacts facts);
ActivityFacts afterLockedHint(ActivityFacts facts, bool isSet);
ActivityFacts afterScreenSaver(ActivityFacts facts, const std::string& name, bool isActive);
/// logind is gone and says nothing any more.
ActivityFacts withoutLogind(ActivityFacts facts);

/// A screen saver hides the windows like a lock does, and is one on most desktops.
bool isLocked(const ActivityFacts& facts);

/// What has happened between the two, in the order of the enumeration.
std::vector<SystemActivityEvent> eventsBetween(const ActivityFacts& before, const ActivityFacts& after);

} // namespace kova
