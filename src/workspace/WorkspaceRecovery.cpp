#include "workspace/WorkspaceController.h"

namespace kova {

void WorkspaceController::suspendForSystemTransition() {
    if (!ops_.access.isRunning() || refreshCycle_.isSuspended()) return;
    // If a poll has noticed the lock before the event, the displays were recorded at that time.
    if (!ops_.access.isSuspendedOrLocked()) parts_.recovery.noteScreens(*parts_.state.screens);
    parts_.recovery.beginUnseenTime(parts_.services.queue.uptime());
    refreshCycle_.suspend();
    parts_.state.isSuspended.set(true);
    parts_.recovery.noteLocked(false);
    parts_.recovery.remember(parts_.liveWindows.all(), parts_.assignments);
    ops_.steps.abandonDrags();
    parts_.windowService->cancelPlacements([](const CGRect&) { return true; });
}

void WorkspaceController::resumeAfterSystemTransition() {
    if (!ops_.access.isRunning() || !refreshCycle_.isSuspended()) return;
    refreshCycle_.resume();
    parts_.state.isSuspended.set(false);
    beginTransitionRecovery();
    refreshCycle_.startTimer();
    refresh();
}

/// If the displays differ from those before the transition, ends focus mode and moves windows to the new layouts. A
/// display that was disconnected and connected again during the transition does not count as changed.
void WorkspaceController::beginTransitionRecovery() {
    // No window could be placed during the transition.
    parts_.awaited.postpone(parts_.recovery.endUnseenTime(parts_.services.queue.uptime()));
    if (parts_.recovery.hasOtherScreens(*parts_.state.screens)) {
        (void)ops_.steps.leaveFocusMode();
        ops_.follower.migrateChangedDisplays();
    }
    parts_.displays.beginSettling();
    parts_.recovery.begin(parts_.services.queue.uptime());
    ops_.geometry.layouts().invalidateAll();
    ops_.keeper.commit({.hasMovedTiles = true, .correctedDrift = kNoCorrection});
}

/// Returns true while the login session is locked. The caller then moves, minimizes and forgets no window.
bool WorkspaceController::applyLockedSession(bool pollFoundLocked) {
    if (pollFoundLocked || parts_.services.session.isLoginSessionScreenLocked()) {
        if (!parts_.recovery.isLocked()) {
            parts_.recovery.beginUnseenTime(parts_.services.queue.uptime());
            parts_.recovery.noteLocked(true);
            parts_.state.isSuspended.set(true);
            parts_.recovery.noteScreens(*parts_.state.screens);
            parts_.recovery.remember(parts_.liveWindows.all(), parts_.assignments);
            ops_.steps.abandonDrags(); // the user cannot see the drag
            parts_.windowService->cancelPlacements([](const CGRect&) { return true; });
        }
        return true;
    }
    if (parts_.recovery.isLocked()) {
        parts_.recovery.noteLocked(false);
        parts_.state.isSuspended.set(false);
        beginTransitionRecovery();
    }
    return false;
}

/// Gives the recognized windows their new ids in all objects.
void WorkspaceController::adoptSuccessors(const std::vector<WindowSuccessor>& successors) {
    for (const auto& [formerID, id] : successors) {
        parts_.renameWindow(formerID, id);
        ops_.keeper.publishMinimums();
        if (parts_.assignments.isInAnyTile(id)) ops_.keeper.exemptFromRules(id);
    }
    if (!successors.empty()) ops_.keeper.commit({.correctedDrift = kNoCorrection, .comparesTiles = false});
}

/// Places each returning window once. Minimized and hidden windows are placed when they are shown.
void WorkspaceController::recoverAssignedWindows() {
    for (const auto& windowID : parts_.recovery.takeRecovered(parts_.liveWindows.all(), parts_.assignments)) {
        const ManagedWindow* window = parts_.liveWindows.find(windowID);
        if (!window) continue;
        const auto zoomedOn = parts_.focusMode.displayOf(windowID);
        auto frame = zoomedOn ? ops_.geometry.zoomFrame(*zoomedOn) : ops_.geometry.frameForWindow(windowID);
        if (zoomedOn && frame) frame = ops_.geometry.largestAllowedFrame(*window, *frame);
        if (frame && (zoomedOn || !ops_.presenter.isLeftAlone(*window))) {
            ops_.presenter.writeFrame(*window, *frame, AccessibilityWindowService::BringToFront::no);
        }
    }
    if (!parts_.recovery.isComplete(parts_.assignments)) return;
    parts_.recovery.clear();
    refresh(); // the next poll places the windows that were left alone during the recovery
}

} // namespace kova
