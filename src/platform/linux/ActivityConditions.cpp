#include "platform/linux/ActivityConditions.h"

namespace kova {

ActivityFacts afterLockSignal(ActivityFacts facts) {
    facts.isLockAwaited = !isLocked(facts) || facts.isLockAwaited;
    return facts;
}

ActivityFacts afterUnlockSignal(ActivityFacts facts) {
    facts.isLockAwaited = false;
    return facts;
}

ActivityFacts afterLockedHint(ActivityFacts facts, bool isSet) {
    facts.isLockedHintSet = isSet;
    facts.isLockAwaited = false; // the hint either confirms the lock or reports the unlock
    return facts;
}

ActivityFacts afterScreenSaver(ActivityFacts facts, const std::string& name, bool isActive) {
    if (isActive) {
        facts.activeScreenSavers.insert(name);
        facts.isLockAwaited = false; // confirmed
    } else {
        // Keeps isLockAwaited: a screen saver that is not active yet may become active for this request.
        facts.activeScreenSavers.erase(name);
    }
    return facts;
}

ActivityFacts withoutLogind(ActivityFacts facts) {
    const ActivityFacts defaults;
    facts.isPreparingForSleep = defaults.isPreparingForSleep;
    facts.isSessionActive = defaults.isSessionActive;
    facts.isLockedHintSet = defaults.isLockedHintSet;
    facts.isLockAwaited = defaults.isLockAwaited;
    return facts;
}

bool isLocked(const ActivityFacts& facts) {
    return facts.isLockedHintSet || facts.isLockAwaited || !facts.activeScreenSavers.empty();
}

std::vector<SystemActivityEvent> eventsBetween(const ActivityFacts& before, const ActivityFacts& after) {
    using enum SystemActivityEvent;
    std::vector<SystemActivityEvent> events;
    const auto addIfChanged = [&events](bool was, bool is, SystemActivityEvent begins, SystemActivityEvent ends) {
        if (was != is) events.push_back(is ? begins : ends);
    };
    addIfChanged(before.isPreparingForSleep, after.isPreparingForSleep, systemWillSleep, systemDidWake);
    addIfChanged(!before.isSessionActive, !after.isSessionActive, sessionDidResignActive, sessionDidBecomeActive);
    addIfChanged(isLocked(before), isLocked(after), screenDidLock, screenDidUnlock);
    return events;
}

} // namespace kova
