// An application that was launched into a tile and has not shown its window yet.
#pragma once

#include "support/MainQueue.h"
#include "windowing/ManagedWindow.h"

#include <optional>
#include <string>

namespace kova {

struct PendingApplicationPlacement {
    static constexpr Seconds kLifetime{20};

    LaunchableApplication application;
    std::string displayID;
    std::string slotID;
    Seconds expiresAt{0};                   // uptime
    std::optional<pid_t> processIdentifier; // once it was started

    /// By the bundle identifier, or by the process that was started: the only mark of an application without one.
    bool isAwaiting(const ManagedWindow& window) const {
        const bool isSameBundle =
            application.bundleIdentifier && window.bundleIdentifier == application.bundleIdentifier;
        return isSameBundle || window.processIdentifier == processIdentifier;
    }
};

} // namespace kova
