// Sleep, lock and session switches: the workspace leaves everything alone until the user can see the screen again, and
// then puts back what the desktop has lost, moved or renamed meanwhile.
#include "workspace/WorkspaceController.h"

namespace kova {

/// The user cannot see what would be done.
bool WorkspaceController::isAway() const {
    return refreshCycle_.isSuspended() || recovery_.detectedLockedLoginSession;
}

bool WorkspaceController::mayMoveWindows() const {
    return isRunning() && !isAway() && *state_.permissionState == AccessibilityPermissionState::granted;
}

void WorkspaceController::suspendForSystemTransition() {
    if (!isRunning() || refreshCycle_.isSuspended()) return;
    if (!isAway()) recovery_.noteScreens(*state_.screens); // a poll may have seen the lock before it was told
    recovery_.unseenTime().begin(services_.queue.uptime());
    refreshCycle_.suspend();
    state_.isSuspended.set(true);
    recovery_.detectedLockedLoginSession = false;
    recovery_.remember(liveWindows_.all(), assignments_);
    abandonDrags();
    windowService_->cancelPlacements([](const CGRect&) { return true; });
}

void WorkspaceController::resumeAfterSystemTransition() {
    if (!isRunning() || !refreshCycle_.isSuspended()) return;
    refreshCycle_.resume();
    state_.isSuspended.set(false);
    beginTransitionRecovery();
    refreshCycle_.startTimer();
    refresh();
}

/// Displays that went and came back meanwhile have changed nothing.
void WorkspaceController::beginTransitionRecovery() {
    awaited_.postpone(recovery_.unseenTime().end(services_.queue.uptime())); // nothing could be placed
    if (recovery_.hasOtherScreens(*state_.screens)) {
        (void)leaveFocusMode();
        migrateChangedDisplays();
    }
    displays_.beginSettling();
    recovery_.begin(services_.queue.uptime());
    layouts_.invalidateAll();
    noteTilesMoved();
}

/// True while the session is locked: then nothing is moved, minimised or forgotten.
bool WorkspaceController::applyLockedSession(bool pollFoundLocked) {
    if (pollFoundLocked || services_.session.isLoginSessionScreenLocked()) {
        if (!recovery_.detectedLockedLoginSession) {
            recovery_.unseenTime().begin(services_.queue.uptime());
            recovery_.detectedLockedLoginSession = true;
            state_.isSuspended.set(true);
            recovery_.noteScreens(*state_.screens);
            recovery_.remember(liveWindows_.all(), assignments_);
            abandonDrags(); // the hand cannot see what it would do
            windowService_->cancelPlacements([](const CGRect&) { return true; });
        }
        return true;
    }
    if (recovery_.detectedLockedLoginSession) {
        recovery_.detectedLockedLoginSession = false;
        state_.isSuspended.set(false);
        beginTransitionRecovery();
    }
    return false;
}

/// In every object that knows windows by their ids.
void WorkspaceController::renameWindow(const std::string& formerID, const std::string& id) {
    const auto rename = [&](auto& part) {
        if constexpr (requires { part.rename(formerID, id); }) part.rename(formerID, id);
    };
    std::apply([&](auto&... part) { (rename(part), ...); }, partsOf(*this));
}

/// Windows that are known again under another id keep all that was known of them.
void WorkspaceController::adoptSuccessors(const std::vector<WindowSuccessor>& successors) {
    for (const auto& [formerID, id] : successors) {
        renameWindow(formerID, id);
        publishMinimums();
        auto floating = *state_.floatingWindowIDs;
        if (floating.erase(formerID) > 0) {
            floating.insert(id);
            state_.floatingWindowIDs.set(std::move(floating));
        }
        if (assignments_.isInAnyTile(id)) noteHasItsPlace(id);
    }
    if (successors.empty()) return;
    state_.assignedWindowIDs.set(assignments_.assignedWindowIDs);
    state_.stackWindowIDsByTarget.set(assignments_.stackWindowIDsByTarget);
}

/// Each window once. Whoever is minimised or hidden is put there when it comes back.
void WorkspaceController::recoverAssignedWindows() {
    for (const auto& windowID : recovery_.takeRecovered(liveWindows_.all(), assignments_)) {
        const ManagedWindow* window = findLive(windowID);
        if (!window) continue;
        const auto zoomedOn = focusMode_.displayOf(windowID);
        auto frame = zoomedOn ? zoomFrame(*zoomedOn) : frameForWindow(windowID);
        if (zoomedOn && frame) frame = restingFrame(*window, *frame);
        if (frame && (zoomedOn || !isLeftAlone(*window))) {
            writeFrame(*window, *frame, AccessibilityWindowService::BringToFront::no);
        }
    }
    if (!recovery_.isComplete(assignments_)) return;
    recovery_.clear();
    refresh(); // what is left alone during recovery is due now
}

} // namespace kova
