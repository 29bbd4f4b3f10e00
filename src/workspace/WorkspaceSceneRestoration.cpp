// Opening a scene: what is there goes to its place at once, what is missing is launched and awaited.
#include "workspace/WorkspaceController.h"

#include "persistence/PreferenceKeys.h"
#include "support/Log.h"
#include "support/Quoted.h"
#include "workspace/StackingOrder.h"
#include "workspace/WindowMatching.h"
#include "workspace/WindowNames.h"

#include <algorithm>
#include <set>

namespace kova {

std::optional<ManagedWindow> WorkspaceController::findWindow(const WorkspaceWindowReference& reference,
                                                             const std::set<std::string>& excluded) const {
    const ManagedWindow* window = WindowMatcher(liveWindows_.all(), excluded).take(reference);
    if (!window) return std::nullopt;
    return *window;
}

/// A scene is about the Space that is shown.
std::vector<ManagedWindow> WorkspaceController::windowsHere() const {
    std::vector<ManagedWindow> here = liveWindows_.all();
    std::erase_if(here, [](const ManagedWindow& window) { return window.isElsewhere; });
    return here;
}

Outcome WorkspaceController::activateScene(const Uuid& id) {
    const auto found = sceneWithID(id);
    if (!found) return refuseSilently("There is no such scene");
    const WorkspaceScene& scene = *found;
    std::vector<std::string> applications;
    std::set<std::string> named;
    for (const auto& placement : scene.placements) {
        const auto& name = placement.window.applicationName;
        if (named.insert(name).second) applications.push_back(name);
    }
    pushUndoSnapshot({std::string(action::ActivateScene::kTraits.undoLabel), std::move(applications)});
    publishSceneReport(SceneReport::State::abandoned);
    awaited_.scene() = {};
    session_.dropKept(); // what it would put into tiles with the first poll would displace the scene's windows
    arranger_.skipStartUpTurn();
    applyLook(scene);
    tileMemory_.spaces().store(liveWindows_.all(), assignments_);
    assignments_ = {};
    displays_.forgetAllWindows();
    tileMemory_.homes().forgetAll();
    recovery_.clear(); // nothing that was in a tile before is awaited there any more
    const std::size_t pendingCount = placeWindowsOf(scene);
    state_.activeSceneID.set(scene.id);
    saveWorkspaceDocument();
    publishSceneReport(pendingCount == 0 ? SceneReport::State::finished : SceneReport::State::waiting);
    if (pendingCount == 0) return done("Scene " + quotedName(scene.name) + " restored");
    return done("Restoring Scene " + quotedName(scene.name) + " — waiting for " + std::to_string(pendingCount) +
                " app window" + (pendingCount == 1 ? "" : "s"));
}

/// Theme, accent colour, inset, layouts and their weights. A layout that is not to be had leaves its display as it is.
void WorkspaceController::applyLook(const WorkspaceScene& scene) {
    WorkspaceProfile profile = *state_.profile;
    profile.themeID = registry_.theme(scene.themeID).id;
    profile.tileInset = clampedTileInset(scene.tileInset);
    const auto& screens = *state_.screens;
    const auto& available = registry_.theme(scene.themeID).layouts;
    for (const auto& display : scene.displays) {
        if (display.ordinal < 0 || display.ordinal >= static_cast<std::int64_t>(screens.size())) continue;
        if (!findLayout(available, display.layoutID)) continue;
        const std::string target = displayID(screens[static_cast<std::size_t>(display.ordinal)]);
        profile.layoutSelectionsByDisplay[target] = DisplayLayoutSelection::layout(display.layoutID);
        profile.layoutWeightsByDisplay[target][display.layoutID] = display.layoutWeights;
    }
    setProfile(std::move(profile));
    state_.accentColorID.set(normalizedAccentColorID(scene.accentColorID));
    services_.preferences.setValue(preferenceKey::accentColor, *state_.accentColorID);
    frames_.reflow().forgetAllPushes();
    (void)arranger_.supersede(); // what an arrangement still had to do was meant for the tiles as they were
    layouts_.invalidateAll();
    noteTilesMoved();
}

/// Gives the number of windows that are still to come.
std::size_t WorkspaceController::placeWindowsOf(const WorkspaceScene& scene) {
    const auto& screens = *state_.screens;
    const auto here = windowsHere();
    WindowMatcher matcher(here, {});
    std::vector<RestoredPlacement> restored;
    std::vector<std::string> toLaunch;
    for (const auto& placement : inRestoringOrder(scene.placements)) {
        if (screens.empty()) break;
        const bool isConnected =
            placement.displayOrdinal >= 0 && placement.displayOrdinal < static_cast<std::int64_t>(screens.size());
        const Screen& screen = screens[isConnected ? static_cast<std::size_t>(placement.displayOrdinal) : 0];
        const auto targets = targetsFor(screen, placement.slotID, placement.claimedSlotIDs);
        if (targets.empty()) {
            awaited_.scene().report.withoutTile.push_back(nameOf(placement.window));
            continue;
        }
        if (const ManagedWindow* window = matcher.take(placement.window)) {
            awaited_.scene().report.adopted.push_back(nameOf(*window));
            restored.push_back(
                {window->id, targets, placement.stackIndex, frontsItsTile(placement.stackIndex, placement.isActive)});
            continue;
        }
        awaited_.scene().pending.push_back(
            {.window = placement.window,
             .displayID = displayID(screen),
             .slotID = placement.slotID,
             .stackIndex = placement.stackIndex,
             .claimedSlotIDs = placement.claimedSlotIDs,
             .isActive = placement.isActive,
             .expiresAt = services_.queue.uptime() + PendingSceneWindowPlacement::kLifetime});
        if (placement.window.bundleIdentifier) toLaunch.push_back(*placement.window.bundleIdentifier);
    }
    carryOutRestored(restored);
    launchForScene(toLaunch);
    if (!awaited_.scene().pending.empty()) refreshCycle_.wake(); // until they come or have waited long enough
    return awaited_.scene().pending.size();
}

/// The tiles of a placement, the anchor first; empty when the display's layout has no such slot.
std::vector<std::string>
WorkspaceController::targetsFor(const Screen& screen, const std::string& slotID,
                                const std::optional<std::vector<std::string>>& claimedSlotIDs) const {
    const auto& slots = layouts_.resolve(screen, *state_.profile, catalogue()).slots;
    std::vector<std::string> targets;
    for (const auto& slot : slotsTaken(slots, slotID, claimedSlotIDs)) {
        targets.push_back(tileTargetID(displayID(screen), slot));
    }
    return targets;
}

/// Applications that are not running are launched behind the others, each once.
void WorkspaceController::launchForScene(const std::vector<std::string>& bundleIDs) {
    if (bundleIDs.empty()) return;
    std::set<std::string> running;
    for (const auto& application : services_.applications.runningApplications()) {
        if (application.bundleIdentifier && !application.isTerminated) running.insert(*application.bundleIdentifier);
    }
    const Seconds now = services_.queue.uptime();
    // One that ended with status 0 may have left its windows to another process.
    const auto hasFailed = [this](pid_t process, const std::string& startIdentity) {
        const auto& applications = services_.applications;
        return applications.processStartIdentity(process) != startIdentity &&
               !applications.hasLaunchedProcessSucceeded(process);
    };
    for (const auto& bundleID : bundleIDs) {
        // Its window is expected to appear by itself.
        if (running.contains(bundleID) || awaited_.expected().isExpected(bundleID, now, hasFailed)) continue;
        const auto application = services_.applications.launchableApplication(bundleID);
        if (!application || !awaited_.scene().launchedBundleIDs.insert(bundleID).second) continue;
        awaited_.scene().report.launched.push_back(application->name);
        awaited_.expected().expect(bundleID, now);
        services_.applications.launch(*application, LaunchActivation::inBackground,
                                      lifetime_.guard([this, application = *application](const LaunchResult& result) {
                                          launchedForScene(application, result);
                                      }));
    }
}

void WorkspaceController::launchedForScene(const LaunchableApplication& application, const LaunchResult& result) {
    noteStarted(application, result);
    if (result.error) log(LogLevel::warning, application.name + ": " + *result.error);
    refresh();
}

/// Puts windows into their tiles: those in front are brought back, those that wait leave the screen.
void WorkspaceController::carryOutRestored(const std::vector<RestoredPlacement>& placements) {
    std::set<std::string> frontsBefore;
    for (const auto& [target, windowID] : assignments_.assignedWindowIDs) frontsBefore.insert(windowID);
    for (const auto& placement : placements) awaited_.scene().stackIndexByID[placement.windowID] = placement.stackIndex;
    assignments_ = withRestored(std::move(assignments_), placements, awaited_.scene().stackIndexByID);
    std::set<std::string> fronts;
    for (const auto& [target, windowID] : assignments_.assignedWindowIDs) fronts.insert(windowID);

    std::vector<std::string> waiting;
    for (const auto& windowID : frontsBefore) {
        if (!fronts.contains(windowID)) waiting.push_back(windowID);
    }
    for (const auto& placement : placements) {
        noteHasItsPlace(placement.windowID);
        if (!fronts.contains(placement.windowID)) {
            if (!frontsBefore.contains(placement.windowID)) waiting.push_back(placement.windowID);
            continue;
        }
        const ManagedWindow window = *findLive(placement.windowID);
        if (window.isMinimized || windowService_->isApplicationHidden(window.processIdentifier)) bringBack(window);
    }
    presentDisplaced(waiting);
    commit({.claimant = "", .straying = Straying::any});
    std::vector<std::string> placedFronts;
    for (const auto& placement : placements) {
        if (fronts.contains(placement.windowID)) placedFronts.push_back(placement.windowID);
    }
    raiseRestored(placedFronts);
}

/// Above the windows that do not belong to the scene; the one that had the keyboard last comes out on top.
void WorkspaceController::raiseRestored(const std::vector<std::string>& windowIDs) {
    std::vector<const ManagedWindow*> fronts;
    for (const auto& id : windowIDs) {
        const ManagedWindow* window = findLive(id);
        if (window && !window->isFullScreen) fronts.push_back(window);
    }
    std::vector<std::string> focusOrder = liveWindows_.focusOrder().windowIDs();
    if (const ManagedWindow* focused = focusedWindow()) focusOrder.insert(focusOrder.begin(), focused->id);
    const auto raised = windowsToRaise(fronts, services_.accessibility.onScreenWindows(), focusOrder);
    for (const auto* window : raised) windowService_->raise(*window);
}

void WorkspaceController::processPendingScenePlacements() {
    if (awaited_.scene().pending.empty()) return;
    std::set<std::string> used = awaited_.scene().movedByUser;
    for (const auto& [target, windowID] : assignments_.assignedWindowIDs) used.insert(windowID);
    for (const auto& [target, stack] : assignments_.stackWindowIDsByTarget) used.insert(stack.begin(), stack.end());
    const auto here = windowsHere();
    WindowMatcher matcher(here, used);

    auto pending = std::move(awaited_.scene().pending);
    awaited_.scene().pending.clear();
    std::stable_sort(pending.begin(), pending.end(),
                     [](const auto& a, const auto& b) { return a.stackIndex < b.stackIndex; });
    std::size_t unavailable = 0;
    std::vector<RestoredPlacement> restored;
    for (auto& placement : pending) {
        if (placement.expiresAt <= services_.queue.uptime()) {
            ++unavailable;
            awaited_.scene().report.missing.push_back(nameOf(placement.window));
            continue;
        }
        const Screen* screen = screenOf(placement.displayID);
        const auto targets =
            screen ? targetsFor(*screen, placement.slotID, placement.claimedSlotIDs) : std::vector<std::string>{};
        const ManagedWindow* window = targets.empty() ? nullptr : matcher.take(placement.window);
        if (window) {
            awaited_.scene().report.placed.push_back(nameOf(*window));
            restored.push_back(
                {window->id, targets, placement.stackIndex, frontsItsTile(placement.stackIndex, placement.isActive)});
        } else {
            awaited_.scene().pending.push_back(std::move(placement));
        }
    }
    if (!restored.empty()) changeLater([&] { carryOutRestored(restored); });
    if (awaited_.scene().pending.empty()) return endRestoration(unavailable);
    publishSceneReport(SceneReport::State::waiting);
}

/// An opening that has ended keeps the state in which it ended.
void WorkspaceController::publishSceneReport(SceneReport::State state) {
    SceneReport& report = awaited_.scene().report;
    if (state == SceneReport::State::abandoned && awaited_.scene().pending.empty()) return;
    report.state = state;
    state_.sceneReport.set(report);
}

void WorkspaceController::endRestoration(std::size_t unavailable) {
    publishSceneReport(SceneReport::State::finished);
    awaited_.scene() = {};
    if (unavailable == 0) return showStatusMessage("Scene fully restored");
    showStatusMessage("Scene restored — " + std::to_string(unavailable) + " app window" +
                      (unavailable == 1 ? " was" : "s were") + " unavailable");
}

} // namespace kova
