// Whether the user can see the screen, as far as the system has told. Pure value.
#pragma once

#include "windowing/SystemActivityServicing.h"

namespace kova {

struct SystemActivityState {
    bool isSystemAwake = true;
    bool areScreensAwake = true;
    bool isSessionActive = true;
    bool isScreenLocked = false;

    /// Changes the one condition that the event is about.
    void update(SystemActivityEvent event);
    /// Any single unfavourable condition is enough for windows to be left alone.
    bool isAvailable() const { return isSystemAwake && areScreensAwake && isSessionActive && !isScreenLocked; }

    bool operator==(const SystemActivityState&) const = default;
};

} // namespace kova
