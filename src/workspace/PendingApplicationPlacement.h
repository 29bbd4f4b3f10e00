// An application that was launched into a tile and has no window yet.
#pragma once

#include "layout/TileTarget.h"
#include "support/MainQueue.h"
#include "windowing/ManagedWindow.h"

#include <map>
#include <optional>
#include <string>

namespace kova {

struct PendingApplicationPlacement {
    static constexpr Seconds kLifetime{20};

    LaunchableApplication application;
    DisplayID displayID;
    SlotID slotID;
    TileTarget requestedTile;               // with the display's id at the launch, even if that id changes later
    Seconds expiresAt{0};                   // uptime
    std::optional<pid_t> processIdentifier; // absent until the process has started

    /// Whether the window belongs to the application, by its bundle identifier or its process.
    bool isAwaiting(const ManagedWindow& window) const {
        const bool isSameBundle =
            application.bundleIdentifier && window.bundleIdentifier == application.bundleIdentifier;
        return isSameBundle || window.processIdentifier == processIdentifier;
    }
};

/// The launched applications, by tile.
std::map<TileTarget, LaunchableApplication>
applicationsOf(const std::map<TileTarget, PendingApplicationPlacement>& placements);
void renameDisplay(std::map<TileTarget, PendingApplicationPlacement>& placements, const DisplayID& formerID,
                   const DisplayID& newID);

} // namespace kova
