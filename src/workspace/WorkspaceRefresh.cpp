// What a poll changes: the window lists, the assignments, and frames that have strayed from their tiles.
#include "workspace/WindowContinuity.h"
#include "workspace/WorkspaceController.h"

#include <algorithm>
#include <utility>

namespace kova {

namespace {

constexpr Seconds kAutomaticArrangementDelay{0.3};

bool samePresentation(const std::vector<ManagedWindow>& a, const std::vector<ManagedWindow>& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](const ManagedWindow& x, const ManagedWindow& y) { return kova::samePresentation(x, y); });
}

bool sameTitles(const std::vector<ManagedWindow>& a, const std::vector<ManagedWindow>& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](const ManagedWindow& x, const ManagedWindow& y) { return x.title == y.title; });
}

} // namespace

void WorkspaceController::applyPoll(PollResult result) {
    if (applyLockedSession(result.isSessionLocked)) return;
    dropExpiredApplicationPlacements();
    const bool isRecovering = recovery_.isActive(services_.queue.uptime());
    const bool isGranted = result.permissionState == AccessibilityPermissionState::granted;
    if (isRecovering && !isGranted) return;
    if (!isRecovering && recovery_.hasDeadline()) recovery_.clear();
    const bool justGranted = isGranted && *state_.permissionState != AccessibilityPermissionState::granted;
    state_.permissionState.set(result.permissionState);
    if (isGranted) {
        applyGrantedPoll(std::move(result.windows), result.begun, isRecovering, justGranted);
    } else {
        applyDenied();
    }
}

void WorkspaceController::applyGrantedPoll(WindowEnumeration found, Seconds begun, bool isRecovering,
                                           bool justGranted) {
    const auto formerSpace = std::exchange(shownSpace_, found.shownSpace);
    std::vector<WindowSuccessor> tabs;
    if (!isRecovering) {
        // A change that was told while the poll listed windows counts as well.
        const bool isSame = formerSpace == shownSpace_ && services_.accessibility.shownSpace() == shownSpace_;
        tabs = takeTabSuccessors(found, liveWindows_, isSame ? ShownSpace::same : ShownSpace::another);
    }
    const auto dialogsBefore = dialogs_.all();
    auto windows = dialogs_.takeFrom(withUnlisted(std::move(found), liveWindows_));
    presentationRequests_.overrule(windows, begun);
    const bool hasOtherTitles = !sameTitles(liveWindows_, windows) || !sameTitles(dialogsBefore, dialogs_.all());
    setLiveWindows(std::move(windows));
    adoptSuccessors(tabs);
    if (isRecovering) adoptSuccessors(recovery_.takeSuccessors(liveWindows_, assignments_));
    for (const auto& window : liveWindows_) { // what is not shown is not written to
        const auto pending = window.isElsewhere ? windowService_->pendingFrame(window.id) : std::nullopt;
        if (!pending) continue;
        spaces_.owe(window.id, *pending);
        windowService_->cancelPlacement(window.id);
    }
    expectedApplications_.forgetThoseWithWindows(liveWindows_);
    minimizedWindows_.follow(liveWindows_, services_.queue.uptime());
    const bool tookUpSession = takeUpSession();
    if (hasOtherTitles) state_.titleRevision.set(*state_.titleRevision + 1);
    if (!isRecovering && *state_.focusMode && !findLive((*state_.focusMode)->windowID)) {
        closeFocusMode();
        showStatusMessage("Focus Mode closed because its window is no longer available");
    }
    const auto isGone = [&](const auto& entry) { return !findLive(entry.first); };
    sizes_.keepOnly([this](const std::string& windowID) { return findLive(windowID) != nullptr; });
    publishMinimums();
    std::erase_if(refusals_, isGone);
    for (auto& [windowID, refusal] : refusals_) {
        if (!windowService_->pendingFrame(windowID)) refusal.isUnseen = false;
    }
    reflow_.keepOnly([this](const std::string& windowID) { return findLive(windowID) != nullptr; });
    if (!suspension_.isSuspended()) presentPoll(isRecovering);
    if (tookUpSession) {
        didAutoArrange_ = true; // everything is where it was
    } else {
        scheduleAutomaticArrangement(justGranted);
    }
}

/// Not while the user's hand moves windows: then the picture is the hand's.
void WorkspaceController::presentPoll(bool isRecovering) {
    publishWindows();
    noteFocus();
    keepAssignmentsValid();
    followShownSpace();
    putAwayAgain();
    if (isRecovering) {
        if (!regainedFronts_.empty() || !regainedWaiting_.empty()) settleOnDisplays();
        recoverAssignedWindows();
    }
    noteSizesSeen();
    giveBackSpans();
    if (!isRecovering) claimRoomWhereNeeded();
    noteTileGeometry();
    reapplyTileFrames();
    giveOwedFrames();
    processPendingApplicationPlacements();
    processPendingScenePlacements();
    if (!isRecovering && *state_.continuousManagementEnabled) applyRules(liveWindows_);
    services_.accessibility.flush();
}

void WorkspaceController::publishWindows() {
    if (!samePresentation(*state_.windows, liveWindows_)) state_.windows.set(liveWindows_);
}

/// Windows of the Space that is shown now are where they were when it was last shown.
void WorkspaceController::followShownSpace() {
    if (!spaces_.restore(liveWindows_, shownSpace_, assignments_)) return;
    migrateChangedDisplays(); // a display may have another layout since
}

/// A window in a tile has been put there already.
void WorkspaceController::giveOwedFrames() {
    for (const auto& [windowID, frame] : spaces_.takeDueFrames(liveWindows_)) {
        const ManagedWindow* window = findLive(windowID);
        if (assignments_.isAssigned(windowID) || isLeftAlone(*window)) continue;
        writeFrame(ManagedWindow(*window), frame, AccessibilityWindowService::BringToFront::no);
    }
}

void WorkspaceController::keepAssignmentsValid() {
    std::set<std::string> kept = sparedWindowIDs();
    for (const auto& window : liveWindows_) kept.insert(window.id);
    const TileAssignments before = assignments_;
    assignments_.keepOnly(kept);
    absence_.keepOnly(kept);
    outgrown_.keepOnly(kept);
    spaces_.keepOnly(kept);
    layoutHomes_.keepOnly(kept);
    succession_.keepOnly(kept);
    if (before != assignments_) bringNextForward(before);
    publishAssignments();
}

void WorkspaceController::applyDenied() {
    setLiveWindows(dialogs_.takeFrom({}));
    presentationRequests_.clear();
    refusals_.clear();
    abandonDrags();
    state_.windows.set({});
    state_.focusedWindowID.set(std::nullopt);
    assignments_.assignedWindowIDs.clear();
    assignments_.anchorTargetIDsByWindowID.clear();
    spaces_ = {};
    publishAssignments();
}

void WorkspaceController::scheduleAutomaticArrangement(bool justGranted) {
    const bool isDue = justGranted || !didAutoArrange_;
    if (!isDue || state_.screens->empty()) return;
    didAutoArrange_ = true; // also when it is off: switched on later, it is for the next start
    if (!state_.profile->autoArrangeOnLaunch) return;
    services_.queue.after(kAutomaticArrangementDelay, lifetime_.guard([this, generation = autoArrangeGeneration_] {
        if (generation != autoArrangeGeneration_) return; // who arranged meanwhile, or undid that, has had their way
        if (mayMoveWindows()) {
            arrangeWindows();
        } else if (isAway()) {
            didAutoArrange_ = false; // a lock may be heard of late: it is due when the user is back
        }
    }));
}

bool WorkspaceController::hasUnfinishedBusiness() const {
    return recovery_.hasDeadline() || minimizedWindows_.isExpecting() || !awaitedOfSession_.empty() ||
           !comingBack_.empty() || presentationRequests_.isWaiting() || recovery_.detectedLockedLoginSession ||
           !pendingApplicationPlacements_.empty() || !restoration_.pending.empty() ||
           std::any_of(refusals_.begin(), refusals_.end(), [](const auto& entry) {
               return entry.second.isUnseen || entry.second.attempts < kPlacementAttempts;
           });
}

} // namespace kova
