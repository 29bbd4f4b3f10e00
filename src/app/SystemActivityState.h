// The conditions under which the user can see the screen, according to the system's events. A plain value.
#pragma once

#include "windowing/SystemActivityServicing.h"

namespace kova {

struct SystemActivityState {
    bool isSystemAwake = true;
    bool areScreensAwake = true;
    bool isSessionActive = true;
    bool isScreenLocked = false;

    /// Changes the one condition that the event reports.
    void update(SystemActivityEvent event);
    /// False if any of the four conditions keeps the user from seeing the screen.
    bool isAvailable() const { return isSystemAwake && areScreensAwake && isSessionActive && !isScreenLocked; }

    bool operator==(const SystemActivityState&) const = default;
};

} // namespace kova
