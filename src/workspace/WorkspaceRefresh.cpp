#include "workspace/WorkspaceController.h"

#include "workspace/WindowContinuity.h"

#include <algorithm>
#include <set>
#include <utility>

namespace kova {

namespace {

bool samePresentation(const std::vector<ManagedWindow>& a, const std::vector<ManagedWindow>& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](const ManagedWindow& x, const ManagedWindow& y) { return kova::samePresentation(x, y); });
}

} // namespace

void WorkspaceController::presentationResumed() {
    publishWindows();
    keepAssignmentsValid();
    ops_.keeper.commit({.correctedDrift = kNoCorrection});
    refresh();
}

void WorkspaceController::applyPoll(PollResult result) {
    if (applyLockedSession(result.isSessionLocked)) return;
    const bool isRecovering = parts_.recovery.isActive(parts_.services.queue.uptime());
    const bool isGranted = result.permissionState == AccessibilityPermissionState::granted;
    if (isRecovering && !isGranted) return;
    if (!isRecovering && parts_.recovery.hasDeadline()) parts_.recovery.clear();
    const bool justGranted = isGranted && *parts_.state.permissionState != AccessibilityPermissionState::granted;
    parts_.state.permissionState.set(result.permissionState);
    if (isGranted) {
        applyGrantedPoll(std::move(result.windows), result.begun, isRecovering, justGranted);
    } else {
        applyDenied();
    }
}

void WorkspaceController::applyGrantedPoll(WindowEnumeration found, Seconds begun, bool isRecovering,
                                           bool justGranted) {
    const RequestBatch::Scope batch(parts_.requests);
    const auto shownSpace = found.shownSpace;
    const auto formerSpace = parts_.liveWindows.noteShownSpace(shownSpace);
    std::vector<WindowSuccessor> tabs;
    if (!isRecovering) {
        // The Space may also have changed during the poll.
        const bool isSame = formerSpace == shownSpace && parts_.services.accessibility.shownSpace() == shownSpace;
        tabs = takeTabSuccessors(found, parts_.liveWindows.all(), isSame ? ShownSpace::same : ShownSpace::another);
    }
    std::set<WindowID> shownBefore;
    for (const auto& window : parts_.liveWindows) {
        if (!window.isElsewhere) shownBefore.insert(window.id);
    }
    parts_.liveWindows.noteUnmanaged(std::move(found.unmanaged));
    const bool hasOtherTitles =
        parts_.liveWindows.take(withUnlisted(std::move(found), parts_.liveWindows.all()), begun);
    const bool hasWindowLeftSpace = std::ranges::any_of(
        parts_.liveWindows, [&](const auto& window) { return window.isElsewhere && shownBefore.contains(window.id); });
    if (shownBefore.empty() || formerSpace != shownSpace || parts_.services.accessibility.shownSpace() != shownSpace ||
        hasWindowLeftSpace) {
        parts_.liveWindows.noteSpaceChange(parts_.services.queue.uptime());
    }
    adoptSuccessors(tabs);
    if (isRecovering) adoptSuccessors(parts_.recovery.takeSuccessors(parts_.liveWindows.all(), parts_.assignments));
    // A window that is elsewhere cannot be placed. It gets its frame when it is shown again.
    for (const auto& window : parts_.liveWindows) {
        const auto pending = window.isElsewhere ? parts_.windowService->pendingFrame(window.id) : std::nullopt;
        if (!pending) continue;
        parts_.tileMemory.setPendingFrame(window.id, *pending);
        parts_.windowService->cancelPlacement(window.id);
    }
    parts_.onPoll();
    const bool hasRestoredSession = ops_.sessionRecorder.restoreSession();
    if (hasOtherTitles) parts_.state.titleRevision.set(*parts_.state.titleRevision + 1);
    if (!isRecovering && parts_.focusMode.isOn() && !parts_.liveWindows.find(parts_.focusMode.mode()->windowID)) {
        (void)ops_.steps.leaveFocusMode();
        parts_.messages.show("Focus Mode closed because its window is no longer available");
    }
    ops_.keeper.publishMinimums();
    if (!parts_.pointer.isPausingPolls()) presentPoll(isRecovering);
    if (hasRestoredSession) {
        parts_.arrangementMemory.skipStartupArrangement(); // the restored session needs no arrangement
    } else {
        ops_.arrangement.scheduleStartupArrangement(justGranted);
    }
}

/// Must not be called during a drag, because only the pointer may move windows during a drag.
void WorkspaceController::presentPoll(bool isRecovering) {
    publishWindows();
    noteFocus();
    keepAssignmentsValid();
    followShownSpace();
    ops_.sessionRecorder.followWindowManager();
    ops_.sessionRecorder.hideStackedWindowsAgain();
    if (isRecovering) {
        if (parts_.displays.hasWindowsToPresent()) ops_.displayChanges.adaptToDisplays();
        recoverAssignedWindows();
    }
    ops_.keeper.noteSizesSeen();
    ops_.keeper.giveBackSpans();
    ops_.keeper.commit({.claimant = isRecovering ? std::nullopt : std::optional<WindowID>("")});
    requestPendingFrames();
    ops_.applications.processPendingApplicationPlacements();
    ops_.scenes.processPendingScenePlacements();
    if (!isRecovering && *parts_.state.continuousManagementEnabled) ops_.rules.applyRules(parts_.liveWindows.all());
}

void WorkspaceController::publishWindows() {
    if (!samePresentation(*parts_.state.windows, parts_.liveWindows.all()))
        parts_.state.windows.set(parts_.liveWindows.all());
}

/// Returns the windows of the Space that is shown now to their tiles on this Space.
void WorkspaceController::followShownSpace() {
    const SpaceChange change = parts_.liveWindows.spaceChange(parts_.services.queue.uptime());
    if (!parts_.tileMemory.restoreFromSpaces(parts_.liveWindows.all(), parts_.liveWindows.shownSpace(), change,
                                             parts_.assignments)) {
        return;
    }
    // A display may have got another layout while this Space was not shown.
    ops_.follower.migrateChangedDisplays();
    ops_.keeper.commit({.correctedDrift = kNoCorrection});
}

/// Requests the frames that windows could not get while they were elsewhere or did not respond. Skips the front windows
/// of tiles, because the commit has already requested their frames.
void WorkspaceController::requestPendingFrames() {
    for (const auto& [windowID, frame] : parts_.tileMemory.takeAppliableFrames(parts_.liveWindows.all())) {
        const ManagedWindow* window = parts_.liveWindows.find(windowID);
        if (parts_.assignments.isAssigned(windowID) || ops_.presenter.isLeftAlone(*window)) continue;
        ops_.presenter.writeFrame(ManagedWindow(*window), frame, AccessibilityWindowService::BringToFront::no);
    }
}

void WorkspaceController::keepAssignmentsValid() {
    std::set<WindowID> kept = ops_.sessionRecorder.unlistedButExpectedWindowIDs();
    for (const auto& window : parts_.liveWindows) kept.insert(window.id);
    const TileAssignments before = parts_.assignments;
    parts_.assignments.keepOnly(kept);
    parts_.displays.keepOnly(kept);
    parts_.tileMemory.keepOnly(kept);
    if (before != parts_.assignments) ops_.keeper.bringNextForward(before);
}

void WorkspaceController::applyDenied() {
    parts_.awaited.dropExpired(parts_.services.queue.uptime());
    parts_.liveWindows.clear();
    parts_.frames.forgetRefusals();
    ops_.steps.abandonDrags();
    parts_.state.windows.set({});
    parts_.state.focusedWindowID.set(std::nullopt);
    parts_.assignments.assignedWindowIDs.clear();
    parts_.assignments.anchorsByWindowID.clear();
    parts_.tileMemory.forgetSpaces();
    ops_.keeper.commit({.correctedDrift = kNoCorrection});
}

/// Records and publishes the focused window. Publishes none if the focused window is not managed.
void WorkspaceController::noteFocus() {
    const auto process = parts_.services.applications.frontmostApplication();
    const auto hasFocus = [&](const ManagedWindow& window) {
        return window.processIdentifier == process && window.isFocusedOfApplication;
    };
    const auto& dialogs = parts_.liveWindows.dialogs().all();
    const auto window = std::ranges::find_if(parts_.liveWindows.all(), hasFocus);
    const auto dialog = std::ranges::find_if(dialogs, hasFocus);
    std::optional<WindowID> focused;
    if (window != parts_.liveWindows.end()) focused = window->id;
    if (dialog != dialogs.end()) focused = parts_.liveWindows.dialogs().ownerOf(dialog->id);
    if (focused) parts_.liveWindows.noteFocus(*focused);
    parts_.state.focusedWindowID.set(focused);
}

} // namespace kova
