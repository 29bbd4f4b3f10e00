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

Outcome WorkspaceController::launchApplication(const action::LaunchApplication& launch) {
    const std::string tile = tileTargetID(launch.displayID, launch.slotID);
    awaited_.awaitLaunch(launch.application, launch.displayID, launch.slotID, services_.queue.uptime());
    services_.applications.launch(launch.application, LaunchActivation::activates,
                                  lifetime_.guard([this, tile, launch](const LaunchResult& result) {
                                      noteStarted(launch.application, result);
                                      applicationLaunched(tile, launch.application.identifier, result);
                                      if (launch.completion) launch.completion(result);
                                  }));
    refreshCycle_.wake(); // until its window is placed or has failed to appear
    return Outcome::done();
}

/// For scenes, which launch no application whose window may still come by itself.
void WorkspaceController::noteStarted(const LaunchableApplication& application, const LaunchResult& result) {
    if (!application.bundleIdentifier) return;
    if (result.error) {
        awaited_.expected().forget(*application.bundleIdentifier);
    } else if (result.processIdentifier) {
        awaited_.expected().noteStarted(*application.bundleIdentifier, *result.processIdentifier,
                                        services_.applications.processStartIdentity(*result.processIdentifier));
    }
}

void WorkspaceController::applicationLaunched(const std::string& tile, const std::string& identifier,
                                              const LaunchResult& result) {
    awaited_.noteLaunched(tile, identifier, result);
    if (result.error) showStatusMessage(*result.error);
    refresh();
}

/// Tiles that wait for the same application are served in the order of their keys.
void WorkspaceController::processPendingApplicationPlacements() {
    std::vector<std::string> waiting;
    for (const auto& [tile, placement] : awaited_.launches()) waiting.push_back(tile);
    for (const auto& target : waiting) {
        // A display that is away may come back, and so may a layout that has the slot.
        const auto launch = awaited_.launches().find(target);
        const bool isThere = launch != awaited_.launches().end() && tileFrameOnScreen(target);
        const ManagedWindow* window = isThere ? windowLaunchedFor(launch->second) : nullptr;
        if (!window) continue;
        const ManagedWindow placed = *window;
        awaited_.dropLaunch(target);
        changeLater([&] {
            if (placed.isMinimized || windowService_->isApplicationHidden(placed.processIdentifier)) bringBack(placed);
            (void)placeWindow(placed.id, target, Focusing::yes);
            noteHasItsPlace(placed.id);
        });
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
