// Ending applications: the one that owns a window, or all regular ones at once.
#include "workspace/WorkspaceController.h"

#include "support/Log.h"
#include "workspace/ForceQuitting.h"

#include <algorithm>

namespace kova {

Outcome WorkspaceController::quitApplication(const std::string& windowID) {
    return endApplicationOf(windowID, "Quit requested for ", [this](pid_t process) -> std::optional<std::string> {
        (void)services_.applications.terminate(process);
        return std::nullopt;
    });
}

Outcome WorkspaceController::forceQuitApplication(const std::string& windowID) {
    const ManagedWindow* window = findLive(windowID);
    if (window && !services_.applications.runningApplication(window->processIdentifier))
        return refuse(notForceQuitMessage(window->applicationName, "it does not run any more"));
    return endApplicationOf(windowID, "Force quit requested for ",
                            [this](pid_t process) { return services_.applications.forceTerminate(process); });
}

/// An application that is asked and refuses stays, and its windows stay managed.
Outcome WorkspaceController::endApplicationOf(const std::string& windowID, const std::string& message,
                                              const std::function<std::optional<std::string>(pid_t)>& end) {
    const ManagedWindow* live = findLive(windowID);
    if (!live) return refuseSilently("The window is gone");
    const ManagedWindow window = *live;
    const auto running = services_.applications.runningApplication(window.processIdentifier);
    if (running && isKeptOpen(*running))
        return refuse(window.applicationName + " belongs to the desktop and stays open");
    if (running) {
        if (const auto reason = end(window.processIdentifier))
            return refuse(notForceQuitMessage(window.applicationName, *reason));
    }
    refresh();
    return done(message + window.applicationName);
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
Outcome WorkspaceController::forceQuit(const std::vector<RunningApplication>& confirmed) {
    ForceQuitOutcome outcome;
    for (const auto& candidate : regularApplicationsToForceQuit()) {
        const bool isConfirmed = std::any_of(confirmed.begin(), confirmed.end(), [&](const auto& other) {
            return other.processIdentifier == candidate.processIdentifier &&
                   other.bundleIdentifier == candidate.bundleIdentifier &&
                   other.localizedName == candidate.localizedName;
        });
        if (!isConfirmed) continue;
        if (const auto reason = services_.applications.forceTerminate(candidate.processIdentifier)) {
            outcome.refusals.push_back(notForceQuitMessage(displayedName(candidate), *reason));
        } else {
            outcome.ended.push_back(candidate);
        }
    }
    for (const auto& refusal : outcome.refusals) log(LogLevel::note, refusal);
    if (outcome.ended.empty()) showStatusMessage("No open applications were force quit");
    refresh();
    return Outcome::done().with(std::move(outcome));
}

} // namespace kova
