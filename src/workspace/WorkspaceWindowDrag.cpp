// Windows that the user moves and resizes by hand.
#include "layout/SpanFrame.h"
#include "workspace/EdgeResize.h"
#include "workspace/WorkspaceController.h"

#include <algorithm>
#include <utility>

namespace kova {

namespace {

constexpr Seconds kResumeAfterDrop{0.16};
constexpr double kLetGoTolerancePoints = 0.5;

/// Screen space to layout space: origin at the visible frame's top left, y down.
CGRect inLayout(const CGRect& rectOnScreen, const CGRect& visibleFrame) {
    return makeRect(minX(rectOnScreen) - minX(visibleFrame), maxY(visibleFrame) - maxY(rectOnScreen),
                    rectOnScreen.size.width, rectOnScreen.size.height);
}

} // namespace

/// The tile that the window would move to if it were let go there; absent over its own, too.
std::optional<std::string> WorkspaceController::dropTarget(const std::string& windowID, CGPoint pointOnScreen) const {
    for (const auto& tile : tiles()) {
        if (!containsPoint(tile.frameOnScreen, pointOnScreen)) continue;
        return tile.windowID == windowID ? std::nullopt : std::optional(tile.targetID);
    }
    return std::nullopt;
}

std::optional<std::string> WorkspaceController::managedWindowUnder(CGPoint pointOnScreen) const {
    const auto found = windowService_->windowElement(pointOnScreen);
    if (!found) return std::nullopt;
    const auto window = std::find_if(liveWindows_.begin(), liveWindows_.end(),
                                     [&](const ManagedWindow& live) { return live.element == found->second; });
    if (window == liveWindows_.end()) return std::nullopt;
    return window->id;
}

std::optional<CGRect> WorkspaceController::currentFrame(const std::string& windowID) const {
    const ManagedWindow* window = findLive(windowID);
    return window ? windowService_->readFrame(window->element) : std::nullopt;
}

void WorkspaceController::pressWindow(const std::string& windowID) {
    frames_.sizes().notePointer(services_.queue.uptime());
    pointer_.press(windowID, currentFrame(windowID));
    windowService_->cancelPlacement(windowID);
}

void WorkspaceController::releaseWindow() {
    const auto held = pointer_.release();
    frames_.sizes().notePointer(services_.queue.uptime());
    ManagedWindow* window = held ? findLive(held->windowID) : nullptr;
    if (!window || !mayMoveWindows()) return;
    const auto now = windowService_->readFrame(window->element);
    if (!now) return;
    window->frame = *now;
    // Where the hand has put it, it has refused nothing yet.
    if (!held->frame || !nearlyEqual(*held->frame, *now, kLetGoTolerancePoints)) frames_.forgetRefusal(held->windowID);
    if (pointer_.isPausingPolls()) return; // its end looks after all windows
    commit({});
}

Outcome WorkspaceController::beginWindowDrag(const std::string& windowID, const CGRect& frameBefore) {
    const ManagedWindow* window = findLive(windowID);
    if (!window || window->isFullScreen || window->isElsewhere || !mayMoveWindows() || focusMode_.isZoomed(windowID)) {
        return Outcome::refused("The window cannot be moved now");
    }
    closeFocusMode();
    (void)pointer_.release(); // more than pressed from here on
    abandonDrags();
    WorkspaceUndoSnapshot before = captureUndoSnapshot();
    before.windowFrames[windowID] = frameBefore;
    frames_.forgetRefusal(windowID); // of places that it is being taken away from
    windowService_->cancelPlacement(windowID);
    pointer_.beginWindowDrag(windowID, std::move(before));
    return Outcome::done();
}

void WorkspaceController::updateWindowDrag(CGPoint pointer, action::WindowDragKind kind) {
    const auto dragged = pointer_.draggedWindow();
    if (!dragged) return;
    pointer_.noteMovement();
    state_.dropTargetSlotID.set(kind == action::WindowDragKind::move ? dropTarget(*dragged, pointer) : std::nullopt);
}

void WorkspaceController::endWindowDrag(CGPoint pointer, action::WindowDragKind kind, action::DropMode mode) {
    (void)pointer_.release();
    auto drag = pointer_.endWindowDrag();
    if (!drag) return;
    const std::string windowID = drag->windowID;
    frames_.sizes().notePointer(services_.queue.uptime());
    state_.dropTargetSlotID.set(std::nullopt);
    ManagedWindow* window = findLive(windowID);
    if (window) {
        const auto before = drag->before.windowFrames.find(windowID);
        if (const auto now = windowService_->readFrame(window->element)) window->frame = *now;
        const bool hadFrame = before != drag->before.windowFrames.end();
        if (kind == action::WindowDragKind::move) {
            dropWindow(ManagedWindow(*window), pointer, mode, std::move(drag->before));
        } else if (hadFrame && assignments_.isAssigned(windowID)) {
            const CGRect frameBefore = before->second;
            resizeTileLike(ManagedWindow(*window), frameBefore, std::move(drag->before));
        }
    }
    commit({});
    pointer_.resumePollsAfter(kResumeAfterDrop);
}

void WorkspaceController::cancelWindowDrag() {
    if (!pointer_.isOnWindow()) return;
    frames_.sizes().notePointer(services_.queue.uptime());
    abandonDrags();
}

void WorkspaceController::dropWindow(const ManagedWindow& window, CGPoint pointer, action::DropMode mode,
                                     WorkspaceUndoSnapshot before) {
    if (mode == action::DropMode::floating) {
        if (!assignments_.isInAnyTile(window.id)) return;
        pushUndoSnapshot({"float", {window.applicationName}}, std::move(before));
        noteMovedByUser(window.id);
        const TileAssignments tilesBefore = assignments_;
        assignments_.remove(window.id);
        bringNextForward(tilesBefore);
        showStatusMessage(window.applicationName + " floats until the next arrangement");
        return;
    }
    const auto target = dropTarget(window.id, pointer);
    if (!target) return; // back to its tile, if it has one
    const auto covering = coveringFor(window, *target);
    if (!covering) return;
    pushUndoSnapshot({"drop on a tile", {window.applicationName}}, std::move(before));
    noteMovedByUser(window.id);
    const TileAssignments tilesBefore = assignments_;
    place(window, *covering, AccessibilityWindowService::BringToFront::yes);
    bringNextForward(tilesBefore);
    learnPlacementByUser(window, *target);
    showStatusMessage("Moved " + window.applicationName + " to " + covering->targets.front().slot.name);
}

/// The dividers at the edges that were pulled follow, as far as the minimums allow; then the window fits its tile
/// again.
void WorkspaceController::resizeTileLike(const ManagedWindow& window, const CGRect& frameBefore,
                                         WorkspaceUndoSnapshot before) {
    const auto anchor = assignments_.targetOf(window.id);
    const Screen* screen = anchor ? screenOfTarget(*anchor) : nullptr;
    if (!screen || !window.frame) return;
    const double top = firstScreenMaxY();
    const CGRect visible = screen->visibleFrame;
    std::vector<CGRect> own, others; // the tile, which the window itself may not fill
    for (const auto& tile : tiles()) {
        if (tile.displayID != displayID(*screen)) continue;
        (tile.windowID == window.id ? own : others).push_back(inLayout(tile.frameOnScreen, visible));
    }
    if (own.empty()) return;
    const CGRect cell = frameOfSpan(own, others);
    const std::string id = displayID(*screen);
    const std::string layoutID = layouts_.resolve(*screen, *state_.profile, catalogue()).id;
    const auto moves = dividersMovedBy(cell, inLayout(flipped(frameBefore, top), visible),
                                       inLayout(flipped(*window.frame, top), visible), solvedTiles(*screen).dividers);
    LayoutWeightOverrides pulled;
    for (const auto& move : moves) {
        LayoutDivider divider = move.divider;
        // Two edges of one split: the second starts from where the first has put it.
        const auto other = pulled.splits.find(divider.splitID);
        if (other != pulled.splits.end()) divider.branchLengths = other->second;
        if (const auto result = draggedWeights(divider, move.translationPoints))
            pulled.splits[divider.splitID] = *result;
    }
    LayoutWeightOverrides weights = state_.profile->weights(id, layoutID);
    const LayoutWeightOverrides weightsBefore = weights;
    for (auto& [splitID, lengths] : pulled.splits) weights.splits[splitID] = std::move(lengths);
    if (weights == weightsBefore) return;
    pushUndoSnapshot({"resize by hand", applicationsOn(id)}, std::move(before));
    storeWeights(id, layoutID, std::move(weights));
    layoutChanged(id);
}

} // namespace kova
