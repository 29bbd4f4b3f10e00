// Whether the user can see the screen, according to the system's events. A value.
#pragma once

#include "windowing/SystemActivityServicing.h"

namespace kova {

struct SystemActivityState {
    bool isSystemAwake = true;
    bool areScreensAwake = true;
    bool isSessionActive = true;
    bool isScreenLocked = false;

    /// Changes the condition to which the event belongs.
    void update(SystemActivityEvent event);
    /// False if any of the four conditions keeps the user from seeing the screen.
    bool isAvailable() const { return isSystemAwake && areScreensAwake && isSessionActive && !isScreenLocked; }

    bool operator==(const SystemActivityState&) const = default;
};

} // namespace kova
