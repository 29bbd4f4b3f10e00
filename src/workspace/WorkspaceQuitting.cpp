// Ending applications: the one that owns a window, or all regular ones at once.
#include "workspace/WorkspaceController.h"

#include "workspace/ForceQuitting.h"

#include <algorithm>

namespace kova {

bool WorkspaceController::quitApplication(const std::string& windowID) {
    return endApplicationOf(windowID, "Quit requested for ",
                            [this](pid_t process) { (void)services_.applications.terminate(process); });
}

bool WorkspaceController::forceQuitApplication(const std::string& windowID) {
    return endApplicationOf(windowID, "Force quit requested for ",
                            [this](pid_t process) { (void)services_.applications.forceTerminate(process); });
}

/// A request without an answer: an application that refuses stays, and its windows stay managed.
bool WorkspaceController::endApplicationOf(const std::string& windowID, const std::string& message,
                                           const std::function<void(pid_t)>& end) {
    const ManagedWindow* live = findLive(windowID);
    if (!live) return false;
    const ManagedWindow window = *live;
    const auto running = services_.applications.runningApplication(window.processIdentifier);
    if (running && isKeptOpen(*running))
        return refuse(window.applicationName + " belongs to the desktop and stays open");
    closeFocusMode();
    if (running) end(window.processIdentifier);
    showStatusMessage(message + window.applicationName);
    refresh();
    return true;
}

std::vector<RunningApplication> WorkspaceController::regularApplicationsToForceQuit() const {
    auto candidates = forceQuitCandidates(services_.applications.runningApplications(),
                                          services_.applications.ownProcessIdentifier());
    sortByName(candidates);
    return candidates;
}

void WorkspaceController::forceQuitAllApplications() {
    const auto candidates = regularApplicationsToForceQuit();
    if (candidates.empty()) return services_.alerts.inform(noOpenApplicationsAlert());
    services_.alerts.confirm(forceQuitAllAlert(candidates), lifetime_.guard([this, candidates](bool isConfirmed) {
        if (isConfirmed) (void)forceQuit(candidates);
    }));
}

/// Only what still is what the user was asked about: a process number may have passed on to another application.
std::vector<RunningApplication> WorkspaceController::forceQuit(const std::vector<RunningApplication>& confirmed) {
    std::vector<RunningApplication> ended;
    for (const auto& candidate : regularApplicationsToForceQuit()) {
        const bool isConfirmed = std::any_of(confirmed.begin(), confirmed.end(), [&](const auto& other) {
            return other.processIdentifier == candidate.processIdentifier &&
                   other.bundleIdentifier == candidate.bundleIdentifier &&
                   other.localizedName == candidate.localizedName;
        });
        if (isConfirmed && services_.applications.forceTerminate(candidate.processIdentifier))
            ended.push_back(candidate);
    }
    if (ended.empty()) showStatusMessage("No open applications were force quit");
    refresh();
    return ended;
}

} // namespace kova
