#include "workspace/SceneActions.h"

#include "persistence/PreferenceKeys.h"
#include "support/Log.h"
#include "support/Quoted.h"
#include "support/text/Text.h"
#include "workspace/WindowMatching.h"
#include "workspace/WindowNames.h"
#include "workspace/WorkspaceParts.h"

#include <algorithm>
#include <set>
#include <utility>

namespace kova {

namespace {

double aspectRatio(const Screen& screen) {
    const CGSize size = screen.visibleFrame.size;
    return size.width / (size.height <= 1 ? 1 : size.height);
}

} // namespace

SceneActions::SceneActions(WorkspaceParts& parts, RefreshCycle& refreshCycle, WorkspaceAccess& access,
                           TileGeometry& geometry, const WindowFinder& finder, WindowPresenter& presenter,
                           TileKeeper& keeper, DocumentStore& documents, UndoSteps& steps,
                           ApplicationActions& applications, std::function<void()> forgetPlaces) :
    services_(parts.services),
    windowService_(*parts.windowService), state_(parts.state), liveWindows_(parts.liveWindows),
    assignments_(parts.assignments), tileMemory_(parts.tileMemory), pointer_(parts.pointer), awaited_(parts.awaited),
    messages_(parts.messages), refreshCycle_(refreshCycle), access_(access), geometry_(geometry), finder_(finder),
    presenter_(presenter), keeper_(keeper), documents_(documents), steps_(steps), applications_(applications),
    forgetPlaces_(std::move(forgetPlaces)) {}

Outcome SceneActions::activateScene(const Uuid& id) {
    const auto found = documents_.sceneWithID(id);
    if (!found) return access_.refuseSilently("There is no such scene");
    const WorkspaceScene& scene = *found;
    std::vector<std::string> applications;
    std::set<std::string> named;
    for (const auto& placement : scene.placements) {
        const auto& name = placement.window.applicationName;
        if (named.insert(name).second) applications.push_back(name);
    }
    steps_.pushUndoSnapshot({std::string(action::ActivateScene::kTraits.undoLabel), std::move(applications)});
    awaited_.beginScene(messages_.addedByAction());
    applyAppearanceAndLayouts(scene);
    tileMemory_.storeElsewhere(liveWindows_.all(), assignments_);
    assignments_ = {};
    forgetPlaces_();
    const std::size_t pendingCount = placeWindowsOf(scene);
    state_.activeSceneID.set(scene.id);
    documents_.saveWorkspaceDocument();
    awaited_.publishReport();
    if (pendingCount == 0) return Outcome::done("Scene " + quoted(scene.name) + " restored");
    return Outcome::done("Restoring Scene " + quoted(scene.name) + " — waiting for " + std::to_string(pendingCount) +
                         " app window" + (pendingCount == 1 ? "" : "s"));
}

/// Applies theme, accent color, inset, layouts and weights. A display whose layout does not exist any more keeps its
/// current one.
void SceneActions::applyAppearanceAndLayouts(const WorkspaceScene& scene) {
    WorkspaceProfile profile = *state_.profile;
    profile.themeID = geometry_.registry().theme(scene.themeID).id;
    profile.tileInset = clampedTileInset(scene.tileInset);
    const auto& screens = *state_.screens;
    const auto& available = geometry_.registry().theme(scene.themeID).layouts;
    for (const auto& display : scene.displays) {
        if (display.ordinal < 0 || display.ordinal >= static_cast<std::int64_t>(screens.size())) continue;
        if (!findLayout(available, display.layoutID)) continue;
        const DisplayID target = displayID(screens[static_cast<std::size_t>(display.ordinal)]);
        profile.layoutSelectionsByDisplay[target] = DisplayLayoutSelection::layout(display.layoutID);
        profile.setWeights(target, display.layoutID, display.layoutWeights);
    }
    keeper_.setProfile(std::move(profile));
    state_.accentColorID.set(normalizedAccentColorID(scene.accentColorID));
    services_.preferences.setValue(preferenceKey::accentColor, *state_.accentColorID);
    geometry_.layouts().invalidateAll();
}

/// Returns the number of awaited windows.
std::size_t SceneActions::placeWindowsOf(const WorkspaceScene& scene) {
    const auto& screens = *state_.screens;
    const auto here = finder_.windowsNotElsewhere();
    WindowMatcher matcher(here, {});
    std::vector<RestoredPlacement> restored;
    std::vector<BundleID> toLaunch;
    for (const auto& placement : inRestoringOrder(scene.placements)) {
        if (screens.empty()) break;
        const bool isConnected =
            placement.displayOrdinal >= 0 && placement.displayOrdinal < static_cast<std::int64_t>(screens.size());
        const Screen& screen = screens[isConnected ? static_cast<std::size_t>(placement.displayOrdinal) : 0];
        const auto targets = geometry_.targetsFor(screen, placement.slotID, placement.claimedSlotIDs);
        if (targets.empty()) {
            awaited_.noteWithoutTile(placement.window);
            continue;
        }
        if (const ManagedWindow* window = matcher.take(placement.window)) {
            awaited_.noteAdopted(*window);
            restored.push_back(
                {window->id, targets, placement.stackIndex, frontsItsTile(placement.stackIndex, placement.isActive)});
            continue;
        }
        awaited_.awaitForScene({.window = placement.window,
                                .displayID = displayID(screen),
                                .slotID = placement.slotID,
                                .stackIndex = placement.stackIndex,
                                .claimedSlotIDs = placement.claimedSlotIDs,
                                .isActive = placement.isActive,
                                .expiresAt = services_.queue.uptime() + PendingSceneWindowPlacement::kLifetime});
        if (placement.window.bundleIdentifier) toLaunch.push_back(*placement.window.bundleIdentifier);
    }
    carryOutRestored(restored, {.hasMovedTiles = true,
                                .resetsLimits = true,
                                .endsArrangement = true,
                                .claimant = "",
                                .correctedDrift = FrameKeeper::CorrectedDrift::any});
    launchForScene(toLaunch);
    if (!awaited_.scene().pending.empty()) refreshCycle_.wake(); // polls continue until the windows appear or time out
    return awaited_.scene().pending.size();
}

/// Launches applications that do not run, in the background and once each.
void SceneActions::launchForScene(const std::vector<BundleID>& bundleIDs) {
    if (bundleIDs.empty()) return;
    std::set<BundleID> running;
    for (const auto& application : services_.applications.runningApplications()) {
        if (application.bundleIdentifier && !application.isTerminated) running.insert(*application.bundleIdentifier);
    }
    const Seconds now = services_.queue.uptime();
    // A process that ended with status 0 has not failed: another process may show its windows.
    const auto hasFailed = [this](pid_t process, const std::string& startIdentity) {
        const auto& applications = services_.applications;
        return applications.processStartIdentity(process) != startIdentity &&
               !applications.hasLaunchedProcessSucceeded(process);
    };
    for (const auto& bundleID : bundleIDs) {
        // A running or expected application may show its window without another launch.
        if (running.contains(bundleID) || awaited_.expected().isExpected(bundleID, now, hasFailed)) continue;
        const auto application = services_.applications.launchableApplication(bundleID);
        if (!application || !awaited_.noteSceneLaunch(bundleID, application->name, now)) continue;
        services_.applications.launch(*application, LaunchActivation::inBackground,
                                      lifetime_.guard([this, application = *application](const LaunchResult& result) {
                                          launchedForScene(application, result);
                                      }));
    }
}

void SceneActions::launchedForScene(const LaunchableApplication& application, const LaunchResult& result) {
    applications_.noteStarted(application, result);
    if (result.error) log(LogLevel::warning, application.name + ": " + *result.error);
    refreshCycle_.refresh();
}

/// Puts windows into their tiles: shows front windows and hides stacked ones.
void SceneActions::carryOutRestored(const std::vector<RestoredPlacement>& placements, Transaction changes) {
    std::set<WindowID> frontsBefore;
    for (const auto& [target, windowID] : assignments_.assignedWindowIDs) frontsBefore.insert(windowID);
    awaited_.noteRestored(placements);
    assignments_ = withRestored(std::move(assignments_), placements, awaited_.scene().stackIndexByID);
    std::set<WindowID> fronts;
    for (const auto& [target, windowID] : assignments_.assignedWindowIDs) fronts.insert(windowID);

    for (const auto& windowID : frontsBefore) {
        if (!fronts.contains(windowID)) changes.displaced.push_back(windowID);
    }
    for (const auto& placement : placements) {
        keeper_.exemptFromRules(placement.windowID);
        if (!fronts.contains(placement.windowID)) {
            if (!frontsBefore.contains(placement.windowID)) changes.displaced.push_back(placement.windowID);
            continue;
        }
        const ManagedWindow window = *liveWindows_.find(placement.windowID);
        if (window.isMinimized || windowService_.isApplicationHidden(window.processIdentifier))
            presenter_.restore(window);
    }
    keeper_.commit(changes);
    std::vector<WindowID> placedFronts;
    for (const auto& placement : placements) {
        if (fronts.contains(placement.windowID)) placedFronts.push_back(placement.windowID);
    }
    presenter_.raiseRestored(placedFronts);
}

void SceneActions::processPendingScenePlacements() {
    if (awaited_.scene().pending.empty()) return;
    std::set<WindowID> used = awaited_.scene().movedByUser;
    for (const auto& [target, windowID] : assignments_.assignedWindowIDs) used.insert(windowID);
    for (const auto& [target, stack] : assignments_.stackWindowIDsByTarget) used.insert(stack.begin(), stack.end());
    const auto here = finder_.windowsNotElsewhere();
    for (const auto& window : here) {
        if (pointer_.isHolding(window.id)) used.insert(window.id); // may be taken after the release
    }
    WindowMatcher matcher(here, used);

    using Found = AwaitedWindows::FoundForScene;
    const auto find = [&](const PendingSceneWindowPlacement& placement) -> std::optional<Found> {
        const Screen* screen = geometry_.screenOf(placement.displayID);
        if (!screen) return std::nullopt;
        auto targets = geometry_.targetsFor(*screen, placement.slotID, placement.claimedSlotIDs);
        const ManagedWindow* window = targets.empty() ? nullptr : matcher.take(placement.window);
        return window ? std::optional(Found{window, std::move(targets)}) : std::nullopt;
    };
    const auto taken = awaited_.takeForScene(services_.queue.uptime(), find);
    if (!taken.found.empty()) {
        steps_.changeOutsideFocusMode([&] {
            carryOutRestored(taken.found, {.claimant = "", .correctedDrift = FrameKeeper::CorrectedDrift::any});
        });
    }
    awaited_.publishReport();
    if (awaited_.scene().pending.empty()) endRestoration(taken.expired);
}

void SceneActions::endRestoration(std::size_t unavailable) {
    const std::uint64_t undoNumber = awaited_.endScene();
    if (unavailable == 0) return messages_.showResult("Scene fully restored", undoNumber);
    messages_.showResult("Scene restored — " + std::to_string(unavailable) + " app window" +
                             (unavailable == 1 ? " was" : "s were") + " unavailable",
                         undoNumber);
}

std::vector<CapturedPlacement> SceneActions::capturedPlacements() const {
    std::vector<CapturedDisplay> displays;
    for (const auto& screen : *state_.screens) {
        CapturedDisplay display{displayID(screen), {}};
        for (const auto& slot : geometry_.layoutOn(screen).slots) {
            display.slotIDs.push_back(slot.id);
        }
        displays.push_back(std::move(display));
    }
    return capturePlacements(displays, assignments_, [this](const WindowID& id) {
        const ManagedWindow* window = liveWindows_.find(id);
        return window && !window->isElsewhere ? window : nullptr;
    });
}

std::vector<WorkspaceSceneDisplay> SceneActions::capturedDisplays() const {
    std::vector<WorkspaceSceneDisplay> displays;
    for (const auto& screen : *state_.screens) {
        const std::string layoutID = geometry_.layoutOn(screen).id;
        displays.push_back({.ordinal = static_cast<std::int64_t>(displays.size()),
                            .name = screen.localizedName,
                            .aspectRatio = aspectRatio(screen),
                            .layoutID = layoutID,
                            .layoutWeights = state_.profile->weights(displayID(screen), layoutID)});
    }
    return displays;
}

Outcome SceneActions::captureScene(const std::optional<std::string>& name) {
    if (state_.screens->empty()) return access_.refuse("No display is connected");
    const Date now = std::chrono::floor<std::chrono::microseconds>(services_.queue.now());
    WorkspaceScene scene;
    scene.name = trimmed(name.value_or(""));
    if (scene.name.empty()) scene.name = "Workspace " + localMonthDayTime(now);
    scene.createdAt = now;
    scene.updatedAt = now;
    scene.themeID = state_.profile->themeID;
    scene.accentColorID = *state_.accentColorID;
    scene.tileInset = state_.profile->tileInset;
    scene.displays = capturedDisplays();
    for (auto& captured : capturedPlacements()) scene.placements.push_back(std::move(captured.placement));

    const std::string message = "Scene " + quoted(scene.name) + " captured";
    auto document = documents_.workspaceDocument();
    document.activeSceneID = scene.id;
    document.scenes.push_back(std::move(scene));
    const auto changed = documents_.changeDocument(std::move(document));
    return changed ? Outcome::done(message) : changed;
}

std::optional<std::vector<SceneDifference>> SceneActions::diffScene(const Uuid& id) const {
    const auto scene = documents_.sceneWithID(id);
    if (!scene) return std::nullopt;
    const auto here = finder_.windowsNotElsewhere();
    return sceneDifferences(*scene, {.themeID = state_.profile->themeID,
                                     .accentColorID = *state_.accentColorID,
                                     .tileInset = state_.profile->tileInset,
                                     .displays = capturedDisplays(),
                                     .placements = capturedPlacements(),
                                     .windows = here,
                                     .layouts = geometry_.registry().theme(scene->themeID).layouts});
}

} // namespace kova
