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
                                           .requestedTile = tile,
                                           .expiresAt =
                                               services_.queue.uptime() + PendingApplicationPlacement::kLifetime,
                                           .processIdentifier = std::nullopt};
    state_.pendingLaunches.set(applicationsOf(pendingApplicationPlacements_));
    if (application.bundleIdentifier) {
        expectedApplications_.expect(*application.bundleIdentifier, services_.queue.uptime());
    }
    services_.applications.launch(
        application, LaunchActivation::activates,
        lifetime_.guard([this, tile, application, completion = std::move(completion)](const LaunchResult& result) {
            noteStarted(application, result);
            applicationLaunched(tile, application.identifier, result);
            if (completion) completion(result);
        }));
    refreshCycle_.wake(); // until its window is placed or has failed to appear
    return true;
}

/// For scenes, which launch no application whose window may still come by itself.
void WorkspaceController::noteStarted(const LaunchableApplication& application, const LaunchResult& result) {
    if (!application.bundleIdentifier) return;
    if (result.error) {
        expectedApplications_.forget(*application.bundleIdentifier);
    } else if (result.processIdentifier) {
        expectedApplications_.noteStarted(*application.bundleIdentifier, *result.processIdentifier,
                                          services_.applications.processStartIdentity(*result.processIdentifier));
    }
}

void WorkspaceController::applicationLaunched(const std::string& tile, const std::string& identifier,
                                              const LaunchResult& result) {
    // Meanwhile another application may have been launched into the tile.
    const auto pending = std::find_if(
        pendingApplicationPlacements_.begin(), pendingApplicationPlacements_.end(), [&](const auto& entry) {
            return entry.second.requestedTile == tile && entry.second.application.identifier == identifier;
        });
    if (pending != pendingApplicationPlacements_.end()) {
        if (result.error) {
            pendingApplicationPlacements_.erase(pending);
            state_.pendingLaunches.set(applicationsOf(pendingApplicationPlacements_));
        } else {
            pending->second.processIdentifier = result.processIdentifier;
        }
    }
    if (result.error) showStatusMessage(*result.error);
    refresh();
}

void WorkspaceController::dropExpiredApplicationPlacements() {
    const Seconds now = services_.queue.uptime();
    const auto dropped =
        std::erase_if(pendingApplicationPlacements_, [&](const auto& entry) { return entry.second.expiresAt <= now; });
    if (dropped != 0) state_.pendingLaunches.set(applicationsOf(pendingApplicationPlacements_));
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
        state_.pendingLaunches.set(applicationsOf(pendingApplicationPlacements_));
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
