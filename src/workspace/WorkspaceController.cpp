#include "workspace/WorkspaceController.h"

#include "workspace/WindowContinuity.h"
#include "workspace/WorkspacePreferences.h"

#include <utility>

namespace kova {

WorkspaceController::WorkspaceController(const WorkspaceServices& services) :
    parts_(services, {.displaysSettled = [this] { ops_.displayChanges.displaysSettled(); },
                      .moveDivider = [this] { ops_.pointerActions.applyDividerDrag(); },
                      .pollsResumed = [this] { presentationResumed(); },
                      .describeSession = [this] { return ops_.sessionRecorder.describeSession(); }}),
    ops_(parts_, refreshCycle_),
    refreshCycle_(parts_.windowService, services.session, services.changes, *parts_.changeNotifications, services.queue,
                  services.pollingQueue,
                  {[this](PollResult result) { applyPoll(std::move(result)); }, [this] { return parts_.isWaiting(); },
                   [this] { return knownWindows(parts_.liveWindows.all()); }}) {
    WorkspacePreferences loaded = loadWorkspacePreferences(parts_.services.preferences);
    parts_.state.profile.set(std::move(loaded.profile));
    parts_.arrangementMemory.loadLearning(std::move(loaded.learning));
    parts_.state.useThemeBackground.set(loaded.useThemeBackground);
    parts_.state.showBrain.set(loaded.showBrain);
    parts_.state.showTileBackgrounds.set(loaded.showTileBackgrounds);
    parts_.state.accentColorID.set(std::move(loaded.accentColorID));
    parts_.state.scenes.set(std::move(loaded.document.scenes));
    parts_.state.rules.set(std::move(loaded.document.rules));
    parts_.state.activeSceneID.set(loaded.document.activeSceneID);
    parts_.state.continuousManagementEnabled.set(loaded.continuousManagementEnabled);
    parts_.state.bringsNextForward.set(loaded.bringsNextForward);
    ops_.displayChanges.readScreens();
    watchSession();
    subscriptions_.push_back(parts_.state.focusMode.observe([this](const auto& mode) {
        if (mode || !parts_.displays.takeKeptOutByFocusMode()) return;
        parts_.services.queue.post(lifetime_.guard([this] {
            if (ops_.access.mayMoveWindows()) ops_.displayChanges.placeWindowsOfDisconnectedDisplays();
        }));
    }));
    subscriptions_.push_back(
        parts_.services.screens.observeScreens(lifetime_.guard([this] { ops_.displayChanges.screensChanged(); })));
}

WorkspaceController::~WorkspaceController() = default;

void WorkspaceController::start(bool promptForPermission) {
    refreshCycle_.begin();
    ops_.displayChanges.readScreens();
    parts_.state.permissionState.set(parts_.windowService->permissionState());
    if (promptForPermission && *parts_.state.permissionState != AccessibilityPermissionState::granted) {
        parts_.state.permissionState.set(parts_.windowService->requestPermission(true));
    }
    refresh();
    refreshCycle_.startTimer();
}

void WorkspaceController::stop() {
    const RequestBatch::Scope batch(parts_.requests);
    ops_.steps.abandonDrags();
    (void)ops_.steps.leaveFocusMode(); // unlike `closeFocusMode`, also during a suspension
    // Windows of a display that was just disconnected may be off the screen.
    if (parts_.displays.isSettling()) ops_.displayChanges.displaysSettled();
    if (ops_.access.isRunning()) parts_.session.save();
    for (const auto& id : takeHidden()) {
        if (const ManagedWindow* window = parts_.liveWindows.find(id)) parts_.windowService->unminimize(*window);
    }
    parts_.session.forgetReturns();
    (void)parts_.arrangementMemory.dropRemainingSteps();
    parts_.awaited.dropLaunches();
    parts_.awaited.abandonScene();
    (void)parts_.recovery.endUnseenTime(parts_.services.queue.uptime());
    refreshCycle_.end();
    parts_.state.isSuspended.set(false);
    parts_.recovery.clear();
    parts_.recovery.noteLocked(false);
}

/// The windows that KOVA has minimized. Windows behind the front window of a stack are included in any case: a window
/// manager that starts anew may minimize such a window, or carry out a request late. Hidden applications are restored
/// by the desktop.
std::set<WindowID> WorkspaceController::takeHidden() {
    const auto minimized = parts_.liveWindows.takeMinimized();
    std::set<WindowID> hidden(minimized.begin(), minimized.end());
    const auto addStacked = [&](const TileAssignments& tiles) {
        for (const auto& [target, stack] : tiles.stackWindowIDsByTarget) {
            for (const auto& id : stack) {
                if (!tiles.isAssigned(id)) hidden.insert(id);
            }
        }
    };
    addStacked(parts_.assignments);
    for (const auto& [space, tiles] : parts_.tileMemory.spaces().places()) addStacked(tiles);
    return hidden;
}

void WorkspaceController::refresh() {
    refreshCycle_.refresh();
}

void WorkspaceController::recheckAccessibility() {
    // A permission that has just been granted is published by the poll, which then does all that needs it.
    const auto now = parts_.windowService->permissionState();
    if (now != AccessibilityPermissionState::granted) parts_.state.permissionState.set(now);
    refresh();
}

void WorkspaceController::watchSession() {
    const auto watch = [this](const auto& published) {
        subscriptions_.push_back(published.observe([this](const auto&) { parts_.session.noteChange(); }));
    };
    watch(parts_.state.assignedWindowIDs);
    watch(parts_.state.stackWindowIDsByTarget);
    watch(parts_.state.observedMinimumSizes);
    watch(parts_.state.focusMode);
    watch(parts_.state.floatingWindowIDs);
}

} // namespace kova
