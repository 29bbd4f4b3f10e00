// Windows that the user moves and resizes by hand.
#include "layout/SpanFrame.h"
#include "workspace/EdgeResize.h"
#include "workspace/WorkspaceController.h"

#include <algorithm>
#include <utility>

namespace kova {

namespace {

constexpr Seconds kResumeDelay{0.16};
constexpr double kSameFramePoints = 0.5;

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

void WorkspaceController::holdWindow(const std::string& windowID) {
    sizes_.notePointer(services_.queue.uptime());
    heldWindow_ = HeldWindow{windowID, currentFrame(windowID)};
    windowService_->cancelPlacement(windowID);
}

void WorkspaceController::letGoOfWindow() {
    const auto held = std::exchange(heldWindow_, std::nullopt);
    sizes_.notePointer(services_.queue.uptime());
    ManagedWindow* window = held ? findLive(held->id) : nullptr;
    if (!window || !mayMoveWindows()) return;
    const auto now = windowService_->readFrame(window->element);
    if (!now) return;
    window->frame = *now;
    // Where the hand has put it, it has refused nothing yet.
    if (!held->frame || !nearlyEqual(*held->frame, *now, kSameFramePoints)) refusals_.erase(held->id);
    if (suspension_.isSuspended()) return; // its end looks after all windows
    reapplyTileFrames();
    services_.accessibility.flush();
}

bool WorkspaceController::beginWindowDrag(const std::string& windowID, const CGRect& frameBefore) {
    const ManagedWindow* window = findLive(windowID);
    if (!window || window->isFullScreen || window->isElsewhere || !mayMoveWindows()) return false;
    if (*state_.focusMode && (*state_.focusMode)->windowID == windowID) return false;
    closeFocusMode();
    heldWindow_.reset(); // more than held from here on
    abandonDrags();
    snapshotBeforeDrag_ = captureUndoSnapshot();
    snapshotBeforeDrag_->windowFrames[windowID] = frameBefore;
    handMovedWindowID_ = windowID;
    refusals_.erase(windowID); // of places that it is being taken away from
    windowService_->cancelPlacement(windowID);
    suspension_.suspend();
    return true;
}

void WorkspaceController::updateWindowDrag(CGPoint pointer, HandMovement movement) {
    if (!handMovedWindowID_) return;
    suspension_.noteMovement();
    state_.dropTargetSlotID.set(movement == HandMovement::move ? dropTarget(*handMovedWindowID_, pointer)
                                                               : std::nullopt);
}

void WorkspaceController::endWindowDrag(CGPoint pointer, HandMovement movement, LettingGo lettingGo) {
    heldWindow_.reset();
    if (!handMovedWindowID_) return;
    const std::string windowID = *handMovedWindowID_;
    handMovedWindowID_.reset();
    sizes_.notePointer(services_.queue.uptime());
    state_.dropTargetSlotID.set(std::nullopt);
    ManagedWindow* window = findLive(windowID);
    if (window) {
        const auto before = snapshotBeforeDrag_->windowFrames.find(windowID);
        if (const auto now = windowService_->readFrame(window->element)) window->frame = *now;
        const bool hadFrame = before != snapshotBeforeDrag_->windowFrames.end();
        if (movement == HandMovement::move) {
            dropWindow(ManagedWindow(*window), pointer, lettingGo);
        } else if (hadFrame && assignments_.isAssigned(windowID)) {
            resizeTileLike(ManagedWindow(*window), CGRect(before->second));
        }
    }
    snapshotBeforeDrag_.reset();
    publishAssignments();
    reapplyTileFrames();
    services_.accessibility.flush();
    suspension_.endAfter(kResumeDelay);
}

void WorkspaceController::cancelWindowDrag() {
    if (!handMovedWindowID_ && !heldWindow_) return;
    sizes_.notePointer(services_.queue.uptime());
    abandonDrags();
}

void WorkspaceController::dropWindow(const ManagedWindow& window, CGPoint pointer, LettingGo lettingGo) {
    if (lettingGo == LettingGo::floating) {
        if (!assignments_.isInAnyTile(window.id)) return;
        pushUndoSnapshot({"float", {window.applicationName}}, std::move(snapshotBeforeDrag_));
        noteMovedByUser(window.id);
        const TileAssignments before = assignments_;
        assignments_.remove(window.id);
        bringNextForward(before);
        showStatusMessage(window.applicationName + " floats until the next arrangement");
        return;
    }
    const auto target = dropTarget(window.id, pointer);
    if (!target) return; // back to its tile, if it has one
    const auto covering = coveringFor(window, *target);
    if (!covering) return;
    pushUndoSnapshot({"drop on a tile", {window.applicationName}}, std::move(snapshotBeforeDrag_));
    noteMovedByUser(window.id);
    const TileAssignments before = assignments_;
    place(window, *covering, AccessibilityWindowService::BringToFront::yes);
    bringNextForward(before);
    learnPlacementByUser(window, *target);
    showStatusMessage("Moved " + window.applicationName + " to " + covering->targets.front().slot.name);
}

/// The dividers at the edges that were pulled follow, as far as the minimums allow; then the window fits its tile
/// again.
void WorkspaceController::resizeTileLike(const ManagedWindow& window, const CGRect& frameBefore) {
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
    const LayoutWeightOverrides before = weights;
    for (auto& [splitID, lengths] : pulled.splits) weights.splits[splitID] = std::move(lengths);
    if (weights == before) return;
    pushUndoSnapshot({"resize by hand", applicationsOn(id)}, std::move(snapshotBeforeDrag_));
    storeWeights(id, layoutID, std::move(weights));
    reflow_.forgetAllPushes();
    layoutChanged(id);
}

} // namespace kova
