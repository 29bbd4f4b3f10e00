#include "app/SystemActivityState.h"

namespace kova {

void SystemActivityState::update(SystemActivityEvent event) {
    switch (event) {
    case SystemActivityEvent::systemWillSleep:
        isSystemAwake = false;
        return;
    case SystemActivityEvent::systemDidWake:
        isSystemAwake = true;
        return;
    case SystemActivityEvent::screensDidSleep:
        areScreensAwake = false;
        return;
    case SystemActivityEvent::screensDidWake:
        areScreensAwake = true;
        return;
    case SystemActivityEvent::sessionDidResignActive:
        isSessionActive = false;
        return;
    case SystemActivityEvent::sessionDidBecomeActive:
        isSessionActive = true;
        return;
    case SystemActivityEvent::screenDidLock:
        isScreenLocked = true;
        return;
    case SystemActivityEvent::screenDidUnlock:
        isScreenLocked = false;
        return;
    }
}

} // namespace kova
