// Sleep, lock and session switches: the workspace leaves everything alone until the user can see the screen again, and
// then puts back what the desktop has lost, moved or renamed meanwhile.
#include "workspace/WorkspaceController.h"

namespace kova {

namespace {

template <class Map>
void renameKey(Map& map, const std::string& formerKey, const std::string& key) {
    auto entry = map.extract(formerKey);
    if (entry.empty()) return;
    entry.key() = key;
    map.insert(std::move(entry));
}

} // namespace

/// The user cannot see what would be done.
bool WorkspaceController::isAway() const {
    return refreshCycle_.isSuspended() || recovery_.detectedLockedLoginSession;
}

bool WorkspaceController::mayMoveWindows() const {
    return isRunning() && !isAway() && *state_.permissionState == AccessibilityPermissionState::granted;
}

void WorkspaceController::suspendForSystemTransition() {
    if (!isRunning() || refreshCycle_.isSuspended()) return;
    if (!isAway()) screensBeforeTransition_ = *state_.screens; // a poll may have seen the lock before it was told
    unseenTime_.begin(services_.queue.uptime());
    refreshCycle_.suspend();
    state_.isSuspended.set(true);
    recovery_.detectedLockedLoginSession = false;
    recovery_.remember(liveWindows_, assignments_);
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

/// While nothing could be placed, nothing that waits for a window has run out of time.
void WorkspaceController::postponeDeadlines(Seconds duration) {
    for (auto& [tile, placement] : pendingApplicationPlacements_) placement.expiresAt += duration;
    for (auto& placement : restoration_.pending) placement.expiresAt += duration;
    expectedApplications_.postpone(duration);
}

/// Displays that went and came back meanwhile have changed nothing.
void WorkspaceController::beginTransitionRecovery() {
    postponeDeadlines(unseenTime_.end(services_.queue.uptime()));
    if (*state_.screens != screensBeforeTransition_) {
        closeFocusMode();
        migrateChangedDisplays();
    }
    awaitStableDisplays();
    recovery_.begin(services_.queue.uptime());
    layouts_.invalidateAll();
    state_.layoutRevision.set(*state_.layoutRevision + 1);
}

/// True while the session is locked: then nothing is moved, minimised or forgotten.
bool WorkspaceController::applyLockedSession(bool pollFoundLocked) {
    if (pollFoundLocked || services_.session.isLoginSessionScreenLocked()) {
        if (!recovery_.detectedLockedLoginSession) {
            unseenTime_.begin(services_.queue.uptime());
            recovery_.detectedLockedLoginSession = true;
            state_.isSuspended.set(true);
            screensBeforeTransition_ = *state_.screens;
            recovery_.remember(liveWindows_, assignments_);
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

/// Windows that are known again under another id keep all that was known of them.
void WorkspaceController::adoptSuccessors(const std::vector<WindowSuccessor>& successors) {
    for (const auto& [formerID, id] : successors) {
        assignments_.rename(formerID, id);
        absence_.rename(formerID, id);
        outgrown_.rename(formerID, id);
        spaces_.rename(formerID, id);
        layoutHomes_.rename(formerID, id);
        succession_.rename(formerID, id);
        presentationRequests_.rename(formerID, id);
        undo_.rename(formerID, id);
        reflow_.rename(formerID, id);
        for (auto& entry : historyBeforeFocusMode_) entry.snapshot.rename(formerID, id);
        if (focusZoomSnapshot_) focusZoomSnapshot_->rename(formerID, id);
        if (snapshotBeforeDrag_) snapshotBeforeDrag_->rename(formerID, id);
        auto zoomed = *state_.focusMode;
        if (zoomed && zoomed->windowID == formerID) {
            zoomed->windowID = id;
            state_.focusMode.set(zoomed);
        }
        sizes_.rename(formerID, id);
        publishMinimums();
        renameKey(minimumsOfSpanning_, formerID, id);
        renameKey(interactiveWindowFramesByID_, formerID, id);
        renameKey(comingBack_, formerID, id);
        renameKey(restoration_.stackIndexByID, formerID, id);
        for (auto* ids : {&handledRuleWindowIDs_, &awaitedOfSession_, &regainedFronts_, &regainedWaiting_}) {
            if (ids->erase(formerID) > 0) ids->insert(id);
        }
        focusOrder_.rename(formerID, id);
        auto floating = *state_.floatingWindowIDs;
        if (floating.erase(formerID) > 0) {
            floating.insert(id);
            state_.floatingWindowIDs.set(std::move(floating));
        }
        if (handMovedWindowID_ == formerID) handMovedWindowID_ = id;
        if (heldWindow_ && heldWindow_->id == formerID) heldWindow_->id = id;
        lastArrangement_.rename(formerID, id);
        if (assignments_.isInAnyTile(id)) noteHasItsPlace(id);
    }
    if (successors.empty()) return;
    state_.assignedWindowIDs.set(assignments_.assignedWindowIDs);
    state_.stackWindowIDsByTarget.set(assignments_.stackWindowIDsByTarget);
}

/// Each window once. Whoever is minimised or hidden is put there when it comes back.
void WorkspaceController::recoverAssignedWindows() {
    for (const auto& windowID : recovery_.takeRecovered(liveWindows_, assignments_)) {
        const ManagedWindow* window = findLive(windowID);
        if (!window) continue;
        const bool isZoomed = *state_.focusMode && (*state_.focusMode)->windowID == windowID;
        auto frame = isZoomed ? zoomFrame((*state_.focusMode)->displayID) : frameForWindow(windowID);
        if (isZoomed && frame) frame = restingFrame(*window, *frame);
        if (frame && (isZoomed || !isLeftAlone(*window))) {
            writeFrame(*window, *frame, AccessibilityWindowService::BringToFront::no);
        }
    }
    if (!recovery_.isComplete(assignments_)) return;
    recovery_.clear();
    refresh(); // what is left alone during recovery is due now
}

} // namespace kova
