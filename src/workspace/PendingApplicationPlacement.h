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
    TileTarget requestedTile;               // as at the launch; the display may have another id by now
    Seconds expiresAt{0};                   // uptime
    std::optional<pid_t> processIdentifier; // once it was started

    /// By the bundle identifier or, for an application without one, by the started process.
    bool isAwaiting(const ManagedWindow& window) const {
        const bool isSameBundle =
            application.bundleIdentifier && window.bundleIdentifier == application.bundleIdentifier;
        return isSameBundle || window.processIdentifier == processIdentifier;
    }
};

/// The applications that are launched into tiles.
std::map<TileTarget, LaunchableApplication>
applicationsOf(const std::map<TileTarget, PendingApplicationPlacement>& placements);
/// Renames the display in the placements.
void renameDisplay(std::map<TileTarget, PendingApplicationPlacement>& placements, const DisplayID& formerID,
                   const DisplayID& newID);

} // namespace kova
