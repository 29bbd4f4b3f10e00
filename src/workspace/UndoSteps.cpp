#include "workspace/UndoSteps.h"

#include "workspace/WindowCommand.h"
#include "workspace/WorkspaceParts.h"

#include <utility>

namespace kova {

UndoSteps::UndoSteps(WorkspaceParts& parts, RefreshCycle& refreshCycle, WorkspaceAccess& access, TileGeometry& geometry,
                     const WindowFinder& finder, WindowPresenter& presenter, TileKeeper& keeper, Snapshots& snapshots) :
    services_(parts.services),
    requests_(parts.requests), state_(parts.state), undo_(parts.undo), focusMode_(parts.focusMode),
    pointer_(parts.pointer), refreshCycle_(refreshCycle), access_(access), geometry_(geometry), finder_(finder),
    presenter_(presenter), keeper_(keeper), snapshots_(snapshots) {}

/// Ends focus mode before the change, since the end of focus mode would otherwise undo the change.
void UndoSteps::changeOutsideFocusMode(const std::function<void()>& change) {
    const RequestBatch::Scope batch(requests_);
    closeFocusMode();
    change();
}

void UndoSteps::abandonDrags() {
    const bool werePollsPaused = pointer_.abandon();
    geometry_.layouts().clearAllTransientWeights();
    state_.dropTarget.set(std::nullopt);
    if (werePollsPaused) refreshCycle_.refresh();
}

void UndoSteps::endDrags() {
    if (!pointer_.isDragging()) return;
    abandonDrags();
    geometry_.layouts().invalidateAll();
    keeper_.commit({.hasMovedTiles = true});
}

void UndoSteps::resumeFocusMode(const WorkspaceSessionZoom& zoom, const ResumedWindows& resumed) {
    const auto now = resumed.idNow.find(zoom.windowID);
    if (now == resumed.idNow.end() || !geometry_.screenOf(zoom.displayID)) return;
    WorkspaceUndoSnapshot snapshot = snapshots_.capture();
    const auto before = zoom.frameBefore ? zoom.frameBefore : geometry_.frameForWindow(now->second);
    if (before) snapshot.windowFrames[now->second] = *before;
    focusMode_.enter({zoom.displayID, zoom.anchor, now->second}, {std::move(snapshot), undo_.entries()});
}

void UndoSteps::pushUndoSnapshot(UndoLabel label, std::optional<WorkspaceUndoSnapshot> snapshot) {
    if (!snapshot) {
        endDrags();
        closeFocusMode();
    }
    (void)focusMode_.leave();
    undo_.push({snapshot ? std::move(*snapshot) : snapshots_.capture(), std::move(label), services_.queue.now()});
    state_.canUndo.set(true);
}

Outcome UndoSteps::toggleFocusMode(const std::optional<WindowID>& windowID) {
    if (!focusMode_.isOn()) return enterFocusMode(windowID);
    leaveFocusMode();
    return Outcome::done("Focus Mode closed — workspace restored");
}

Outcome UndoSteps::enterFocusMode(const std::optional<WindowID>& windowID) {
    const auto start = finder_.zoomStartingPoint(windowID);
    if (!start) {
        const bool exists = finder_.windowOrFocused(windowID) != nullptr;
        return access_.refuse(exists ? "The window lies on no display" : *finder_.whyNoStartingPoint(windowID));
    }
    if (auto reason = whyNotMovable(start->window)) return access_.refuse(*std::move(reason));
    const Screen* screen = geometry_.screenOf(start->displayID);
    if (!screen) return access_.refuseSilently("The window lies on no display");
    if (geometry_.layoutOn(*screen).slots.size() < 2) {
        return access_.refuse("This display already uses a single-pane layout");
    }
    const CGRect frame = geometry_.largestAllowedFrame(start->window, *geometry_.zoomFrame(start->displayID));

    endDrags(); // the snapshot must not contain the frames of an unfinished drag
    auto snapshot = snapshots_.capture();
    auto history = undo_.entries();
    pushUndoSnapshot({std::string(action::ToggleFocusZoom::kTraits.undoLabel), {start->window.applicationName}},
                     snapshot);
    focusMode_.enter({start->displayID, start->target, start->window.id}, {std::move(snapshot), std::move(history)});
    presenter_.writeFrame(start->window, frame, AccessibilityWindowService::BringToFront::yes);
    keeper_.commit({.hasMovedTiles = true, .correctedDrift = kNoCorrection});
    return Outcome::done("Focus Mode — " + start->window.applicationName + " owns this display");
}

bool UndoSteps::leaveFocusMode() {
    auto before = focusMode_.leave();
    if (!before) return false;
    snapshots_.keepAppearance(before->snapshot);
    snapshots_.restore(before->snapshot);
    undo_.restore(std::move(before->history));
    state_.canUndo.set(!undo_.isEmpty());
    keeper_.commit({.hasMovedTiles = true, .correctedDrift = kNoCorrection, .comparesTiles = false});
    return true;
}

/// During a suspension the zoomed window stays zoomed, because actions are refused then.
void UndoSteps::closeFocusMode() {
    if (!access_.isSuspendedOrLocked()) (void)leaveFocusMode();
}

} // namespace kova
