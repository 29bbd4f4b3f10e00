// Launching an application into a tile: its first window lands there although it does not exist yet.
#include "workspace/WorkspaceController.h"

#include <algorithm>

namespace kova {

std::vector<LaunchableApplication> WorkspaceController::launchableApplications() const {
    return services_.applications.launchableApplications();
}

std::optional<LaunchableApplication>
WorkspaceController::launchableApplication(const std::string& bundleIdentifier) const {
    return services_.applications.launchableApplication(bundleIdentifier);
}

bool WorkspaceController::launchApplication(const LaunchableApplication& application, const std::string& displayID,
                                            const std::string& slotID, LaunchCompletion completion) {
    if (!requireWindowAccess()) return false;
    const std::string tile = tileTargetID(displayID, slotID);
    pendingApplicationPlacements_[tile] = {.application = application,
                                           .displayID = displayID,
                                           .slotID = slotID,
                                           .expiresAt =
                                               services_.queue.uptime() + PendingApplicationPlacement::kLifetime,
                                           .processIdentifier = std::nullopt};
    if (application.bundleIdentifier) expectWindowOf(*application.bundleIdentifier);
    services_.applications.launch(
        application, LaunchActivation::activates,
        lifetime_.guard([this, tile, application, completion = std::move(completion)](const LaunchResult& result) {
            if (result.error && application.bundleIdentifier) expectedBundleIDs_.erase(*application.bundleIdentifier);
            applicationLaunched(tile, application.identifier, result);
            if (completion) completion(result);
        }));
    refreshCycle_.wake(); // until its window is placed or has failed to appear
    return true;
}

void WorkspaceController::applicationLaunched(const std::string& tile, const std::string& identifier,
                                              const LaunchResult& result) {
    const auto pending = pendingApplicationPlacements_.find(tile);
    // Meanwhile another application may have been launched into the tile.
    if (pending != pendingApplicationPlacements_.end() && pending->second.application.identifier == identifier) {
        if (result.error) {
            pendingApplicationPlacements_.erase(pending);
        } else {
            pending->second.processIdentifier = result.processIdentifier;
        }
    }
    if (result.error) showStatusMessage(*result.error);
    refresh();
}

void WorkspaceController::dropExpiredApplicationPlacements() {
    const Seconds now = services_.queue.uptime();
    std::erase_if(pendingApplicationPlacements_, [&](const auto& entry) { return entry.second.expiresAt <= now; });
}

/// Tiles that wait for the same application are served in the order of their keys.
void WorkspaceController::processPendingApplicationPlacements() {
    for (auto next = pendingApplicationPlacements_.begin(); next != pendingApplicationPlacements_.end();) {
        const auto& [tile, placement] = *next;
        // A display that is away may come back, and so may a layout that has the slot.
        const ManagedWindow* window = tileFrameOnScreen(tile) ? windowLaunchedFor(placement) : nullptr;
        if (!window) {
            ++next;
            continue;
        }
        const ManagedWindow placed = *window;
        const std::string target = tile;
        next = pendingApplicationPlacements_.erase(next);
        closeFocusMode(); // what it restores later would take the tile away again
        if (placed.isMinimized || windowService_->isApplicationHidden(placed.processIdentifier)) bringBack(placed);
        (void)placeWindow(placed.id, target, Focusing::yes);
        noteHasItsPlace(placed.id);
    }
}

/// The first window of the application that has no place yet; a full-screen one wants none.
const ManagedWindow* WorkspaceController::windowLaunchedFor(const PendingApplicationPlacement& placement) const {
    const auto found = std::find_if(liveWindows_.begin(), liveWindows_.end(), [&](const ManagedWindow& window) {
        return placement.isAwaiting(window) && !window.isFullScreen && !window.isElsewhere &&
               !assignments_.isInAnyTile(window.id);
    });
    return found == liveWindows_.end() ? nullptr : &*found;
}

} // namespace kova
