#include "workspace/ApplicationActions.h"

#include "support/Log.h"
#include "support/Quoted.h"
#include "workspace/ForceQuitting.h"
#include "workspace/WorkspaceParts.h"

#include <algorithm>
#include <utility>

namespace kova {

ApplicationActions::ApplicationActions(WorkspaceParts& parts, RefreshCycle& refreshCycle, WorkspaceAccess& access,
                                       TileGeometry& geometry, WindowPresenter& presenter, TileKeeper& keeper,
                                       UndoSteps& steps) :
    services_(parts.services),
    windowService_(*parts.windowService), state_(parts.state), liveWindows_(parts.liveWindows),
    assignments_(parts.assignments), undo_(parts.undo), focusMode_(parts.focusMode), floating_(parts.floating),
    pointer_(parts.pointer), frames_(parts.frames), awaited_(parts.awaited),
    arrangementMemory_(parts.arrangementMemory), messages_(parts.messages), refreshCycle_(refreshCycle),
    access_(access), geometry_(geometry), presenter_(presenter), keeper_(keeper), steps_(steps) {}

std::vector<LaunchableApplication> ApplicationActions::launchableApplications() const {
    return services_.applications.launchableApplications();
}

std::optional<LaunchableApplication> ApplicationActions::launchableApplication(const BundleID& bundleIdentifier) const {
    return services_.applications.launchableApplication(bundleIdentifier);
}

Outcome ApplicationActions::launchApplication(const action::LaunchApplication& launch) {
    const TileTarget tile{launch.displayID, launch.slotID};
    awaited_.awaitLaunch(launch.application, launch.displayID, launch.slotID, services_.queue.uptime());
    services_.applications.launch(launch.application, LaunchActivation::activates,
                                  lifetime_.guard([this, tile, launch](const LaunchResult& result) {
                                      noteStarted(launch.application, result);
                                      applicationLaunched(tile, launch.application.identifier, result);
                                      if (launch.completion) launch.completion(result);
                                  }));
    refreshCycle_.wake(); // polls continue until the window is placed or the launch times out
    return Outcome::done();
}

/// Records the started process, so that a scene does not launch the application a second time. After an error the
/// application is no longer expected, so a scene may launch it again.
void ApplicationActions::noteStarted(const LaunchableApplication& application, const LaunchResult& result) {
    if (!application.bundleIdentifier) return;
    if (result.error) {
        awaited_.noteNotStarted(*application.bundleIdentifier);
    } else if (result.processIdentifier) {
        awaited_.noteStarted(*application.bundleIdentifier, *result.processIdentifier,
                             services_.applications.processStartIdentity(*result.processIdentifier));
    }
}

void ApplicationActions::applicationLaunched(const TileTarget& tile, const std::string& identifier,
                                             const LaunchResult& result) {
    awaited_.noteLaunched(tile, identifier, result);
    if (result.error) messages_.show(*result.error);
    refreshCycle_.refresh();
}

/// Places the first window of each launched application into the tile of the launch. If several tiles wait for the same
/// application, they get its windows in the order of the tiles' keys.
void ApplicationActions::processPendingApplicationPlacements() {
    std::vector<TileTarget> waiting;
    for (const auto& [tile, placement] : awaited_.launches()) waiting.push_back(tile);
    for (const auto& target : waiting) {
        // A launch stays pending while its tile is missing: the display, or a layout with the slot, may return.
        const auto launch = awaited_.launches().find(target);
        const bool hasTile = launch != awaited_.launches().end() && geometry_.tileFrameOnScreen(target);
        const ManagedWindow* window = hasTile ? windowLaunchedFor(launch->second) : nullptr;
        if (!window) continue;
        const ManagedWindow placed = *window;
        awaited_.dropLaunch(target);
        steps_.changeOutsideFocusMode([&] {
            if (placed.isMinimized || windowService_.isApplicationHidden(placed.processIdentifier))
                presenter_.restore(placed);
            (void)keeper_.placeWindow(placed.id, target, Focusing::yes);
            keeper_.exemptFromRules(placed.id);
        });
    }
}

/// The first window of the application that has no tile yet. Skips windows in full screen or on another Space, windows
/// that float by command, and a window that the pointer holds. Null if there is none.
const ManagedWindow* ApplicationActions::windowLaunchedFor(const PendingApplicationPlacement& placement) const {
    const auto found = std::find_if(liveWindows_.begin(), liveWindows_.end(), [&](const ManagedWindow& window) {
        return placement.isAwaiting(window) && !window.isFullScreen && !window.isElsewhere &&
               !assignments_.isInAnyTile(window.id) && !floating_.contains(window.id) && !pointer_.isHolding(window.id);
    });
    return found == liveWindows_.end() ? nullptr : &*found;
}

Outcome ApplicationActions::quitApplication(const WindowID& windowID) {
    return endApplicationOf(windowID, "Quit requested for ", [this](pid_t process) -> std::optional<std::string> {
        (void)services_.applications.terminate(process);
        return std::nullopt;
    });
}

Outcome ApplicationActions::forceQuitApplication(const WindowID& windowID) {
    const ManagedWindow* window = liveWindows_.find(windowID);
    if (window && !services_.applications.runningApplication(window->processIdentifier))
        return access_.refuse(notForceQuitMessage(window->applicationName, "it does not run any more"));
    return endApplicationOf(windowID, "Force quit requested for ",
                            [this](pid_t process) { return services_.applications.forceTerminate(process); });
}

/// Calls `end` with the application's process and reports `message`. An application that belongs to the desktop is not
/// ended. Windows stay managed until a poll no longer lists them, since an application may refuse to quit.
Outcome ApplicationActions::endApplicationOf(const WindowID& windowID, const std::string& message,
                                             const std::function<std::optional<std::string>(pid_t)>& end) {
    const ManagedWindow* live = liveWindows_.find(windowID);
    if (!live) return access_.refuseSilently("The window is gone");
    const ManagedWindow window = *live;
    const auto running = services_.applications.runningApplication(window.processIdentifier);
    if (running && isKeptOpen(*running))
        return access_.refuse(window.applicationName + " belongs to the desktop and stays open");
    if (running) {
        if (const auto reason = end(window.processIdentifier))
            return access_.refuse(notForceQuitMessage(window.applicationName, *reason));
    }
    refreshCycle_.refresh();
    return Outcome::done(message + window.applicationName);
}

std::vector<RunningApplication> ApplicationActions::regularApplicationsToForceQuit() const {
    auto candidates = forceQuitCandidates(services_.applications.runningApplications(),
                                          services_.applications.ownProcessIdentifier());
    sortByName(candidates);
    return candidates;
}

void ApplicationActions::forceQuitAllApplications() {
    const auto candidates = regularApplicationsToForceQuit();
    if (candidates.empty()) return services_.alerts.inform(noOpenApplicationsAlert());
    services_.alerts.confirm(forceQuitAllAlert(candidates), lifetime_.guard([this, candidates](bool isConfirmed) {
        if (isConfirmed) (void)forceQuit(candidates);
    }));
}

/// Ends the applications that the user has confirmed. A process id may belong to another application by now, so the
/// identifier and the name are compared as well.
Outcome ApplicationActions::forceQuit(const std::vector<RunningApplication>& confirmed) {
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
    if (outcome.ended.empty()) messages_.show("No open applications were force quit");
    refreshCycle_.refresh();
    return Outcome::done().with(std::move(outcome));
}

/// `name` is the name or the identifier of an application, or a part of only one of them.
Outcome ApplicationActions::forgetApplication(const std::string& name) {
    std::map<std::string, std::string> names; // by application key
    for (const auto& [key, minimum] : state_.profile->applicationMinimumSizes) names.emplace(key, key);
    for (const auto& [slotID, key] : state_.profile->preferredApplications) names.emplace(key, key);
    for (const auto& [layoutID, layout] : arrangementMemory_.learning()->layouts) {
        for (const auto& [key, learned] : layout.applications) names.emplace(key, key);
    }
    for (const auto& window : liveWindows_) {
        names[applicationKey(window.applicationName, window.bundleIdentifier)] = window.applicationName;
    }
    const auto folded = [](const std::string& text) { return applicationKey("", BundleID(text)); };
    const std::string asName = applicationKey(name, std::nullopt), asIdentifier = folded(name);
    const auto isExactMatch = [&](const auto& entry) {
        return entry.first == asName || entry.first == asIdentifier || folded(entry.second) == asIdentifier;
    };
    const auto isPartialMatch = [&](const auto& entry) {
        return entry.first.find(asIdentifier) != std::string::npos ||
               folded(entry.second).find(asIdentifier) != std::string::npos;
    };
    if (std::ranges::any_of(names, isExactMatch)) {
        std::erase_if(names, std::not_fn(isExactMatch));
    } else if (std::ranges::count_if(names, isPartialMatch) == 1) {
        std::erase_if(names, std::not_fn(isPartialMatch));
    } else {
        return Outcome::refused("Nothing was learned of an application " + quoted(name));
    }
    ForgottenApplications forgotten;
    WorkspaceProfile profile = *state_.profile;
    AutoArrangeLearningModel learning = *arrangementMemory_.learning();
    for (const auto& [key, shownName] : names) {
        profile.applicationMinimumSizes.erase(key);
        std::erase_if(profile.preferredApplications,
                      [&key = key](const auto& preferred) { return preferred.second == key; });
        learning.forget(key);
        undo_.forgetApplication(key);
        focusMode_.forgetApplication(key);
        for (const auto& window : liveWindows_) {
            if (applicationKey(window.applicationName, window.bundleIdentifier) != key) continue;
            frames_.forget(window.id);
        }
        forgotten.names.push_back(shownName);
    }
    keeper_.setProfile(std::move(profile));
    arrangementMemory_.setLearning(std::make_shared<const AutoArrangeLearningModel>(std::move(learning)));
    keeper_.publishMinimums();
    keeper_.commit(
        {.hasMovedTiles = true, .resetsLimits = true, .correctedDrift = kNoCorrection, .comparesTiles = false});
    if (access_.mayMoveWindows()) refreshCycle_.refresh(); // the poll shrinks spans and places all windows
    return Outcome::done().with(std::move(forgotten));
}

} // namespace kova
