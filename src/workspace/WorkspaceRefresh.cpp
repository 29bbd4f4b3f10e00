// What a poll changes: the window lists, the assignments, and frames that have strayed from their tiles.
#include "workspace/WindowContinuity.h"
#include "workspace/WorkspaceController.h"

#include <algorithm>
#include <set>
#include <utility>

namespace kova {

namespace {

constexpr Seconds kAutomaticArrangementDelay{0.3};

bool samePresentation(const std::vector<ManagedWindow>& a, const std::vector<ManagedWindow>& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](const ManagedWindow& x, const ManagedWindow& y) { return kova::samePresentation(x, y); });
}

} // namespace

void WorkspaceController::applyPoll(PollResult result) {
    if (applyLockedSession(result.isSessionLocked)) return;
    awaited_.dropExpired(services_.queue.uptime());
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
    const auto shownSpace = found.shownSpace;
    const auto formerSpace = liveWindows_.noteShownSpace(shownSpace);
    std::vector<WindowSuccessor> tabs;
    if (!isRecovering) {
        // A change that was told while the poll listed windows counts as well.
        const bool isSame = formerSpace == shownSpace && services_.accessibility.shownSpace() == shownSpace;
        tabs = takeTabSuccessors(found, liveWindows_.all(), isSame ? ShownSpace::same : ShownSpace::another);
    }
    std::set<std::string> shownBefore;
    for (const auto& window : liveWindows_) {
        if (!window.isElsewhere) shownBefore.insert(window.id);
    }
    const bool hasOtherTitles = liveWindows_.take(withUnlisted(std::move(found), liveWindows_.all()), begun);
    const bool haveOthersLeft = std::ranges::any_of(
        liveWindows_, [&](const auto& window) { return window.isElsewhere && shownBefore.contains(window.id); });
    if (shownBefore.empty() || formerSpace != shownSpace || services_.accessibility.shownSpace() != shownSpace ||
        haveOthersLeft) {
        liveWindows_.noteSpaceChange(services_.queue.uptime());
    }
    adoptSuccessors(tabs);
    if (isRecovering) adoptSuccessors(recovery_.takeSuccessors(liveWindows_.all(), assignments_));
    for (const auto& window : liveWindows_) { // what is not shown is not written to
        const auto pending = window.isElsewhere ? windowService_->pendingFrame(window.id) : std::nullopt;
        if (!pending) continue;
        tileMemory_.spaces().owe(window.id, *pending);
        windowService_->cancelPlacement(window.id);
    }
    awaited_.expected().forgetThoseWithWindows(liveWindows_.all());
    liveWindows_.minimized().follow(liveWindows_.all(), services_.queue.uptime());
    const bool tookUpSession = takeUpSession();
    if (hasOtherTitles) state_.titleRevision.set(*state_.titleRevision + 1);
    if (!isRecovering && focusMode_.isOn() && !findLive(focusMode_.mode()->windowID)) {
        (void)leaveFocusMode();
        showStatusMessage("Focus Mode closed because its window is no longer available");
    }
    frames_.onPoll([this](const std::string& id) { return findLive(id) != nullptr; },
                   [this](const std::string& id) { return windowService_->pendingFrame(id).has_value(); });
    publishMinimums();
    if (!pointer_.isPausingPolls()) presentPoll(isRecovering);
    services_.accessibility.flush();
    if (tookUpSession) {
        arranger_.skipStartUpTurn(); // everything is where it was
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
        if (displays_.hasRegained()) settleOnDisplays();
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
    if (!isRecovering && *state_.continuousManagementEnabled) applyRules(liveWindows_.all());
}

void WorkspaceController::publishWindows() {
    if (!samePresentation(*state_.windows, liveWindows_.all())) state_.windows.set(liveWindows_.all());
}

/// Windows of the Space that is shown now are where they were when it was last shown.
void WorkspaceController::followShownSpace() {
    const SpaceChange change = liveWindows_.spaceChange(services_.queue.uptime());
    if (!tileMemory_.spaces().restore(liveWindows_.all(), liveWindows_.shownSpace(), change, assignments_)) return;
    migrateChangedDisplays(); // a display may have another layout since
}

/// A window in a tile has been put there already.
void WorkspaceController::giveOwedFrames() {
    for (const auto& [windowID, frame] : tileMemory_.spaces().takeDueFrames(liveWindows_.all())) {
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
    displays_.keepOnly(kept);
    tileMemory_.keepOnly(kept);
    if (before != assignments_) bringNextForward(before);
    publishAssignments();
}

void WorkspaceController::applyDenied() {
    liveWindows_.clear();
    frames_.forgetRefusals();
    abandonDrags();
    state_.windows.set({});
    state_.focusedWindowID.set(std::nullopt);
    assignments_.assignedWindowIDs.clear();
    assignments_.anchorTargetIDsByWindowID.clear();
    tileMemory_.spaces() = {};
    publishAssignments();
}

void WorkspaceController::scheduleAutomaticArrangement(bool justGranted) {
    if (state_.screens->empty()) return;
    if (!arranger_.takeStartUpTurn(justGranted)) return; // taken also when it is off: that is for the next start
    if (!state_.profile->autoArrangeOnLaunch) return;
    services_.queue.after(kAutomaticArrangementDelay, lifetime_.guard([this, generation = arranger_.newest()] {
        if (!arranger_.isNewest(generation)) return; // the user has arranged meanwhile, or undone that
        if (mayMoveWindows()) {
            changeLater([this] { arrangeWindows(); });
        } else if (isAway()) {
            arranger_.returnStartUpTurn(); // a lock may be noticed late: it is due when the user is back
        }
    }));
}

bool WorkspaceController::hasUnfinishedBusiness() const {
    const auto isWaiting = [](const auto& part) {
        if constexpr (requires { part.isWaiting(); }) return part.isWaiting();
        return false;
    };
    return std::apply([&](const auto&... part) { return (isWaiting(part) || ...); }, partsOf(*this));
}

} // namespace kova
