#include "workspace/PointerActions.h"

#include "layout/SpanFrame.h"
#include "support/SameFrame.h"
#include "workspace/EdgeResize.h"
#include "workspace/WorkspaceParts.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace kova {

namespace {

/// Polls stay paused this long after a drag has ended, while the windows take their new frames.
constexpr Seconds kResumeDelay{0.16};

constexpr const char* kDividerGone = "The layout has changed; this divider no longer exists";

/// Converts from screen space to the layout space of the visible frame.
CGRect inLayout(const CGRect& rectOnScreen, const CGRect& visibleFrame) {
    return makeRect(minX(rectOnScreen) - minX(visibleFrame), maxY(visibleFrame) - maxY(rectOnScreen),
                    rectOnScreen.size.width, rectOnScreen.size.height);
}

} // namespace

PointerActions::PointerActions(WorkspaceParts& parts, WorkspaceAccess& access, TileGeometry& geometry,
                               const WindowFinder& finder, WindowPresenter& presenter, TileKeeper& keeper,
                               const Snapshots& snapshots, UndoSteps& steps, Arrangement& arrangement) :
    services_(parts.services),
    requests_(parts.requests), windowService_(*parts.windowService), state_(parts.state),
    liveWindows_(parts.liveWindows), assignments_(parts.assignments), focusMode_(parts.focusMode),
    pointer_(parts.pointer), frames_(parts.frames), messages_(parts.messages), access_(access), geometry_(geometry),
    finder_(finder), presenter_(presenter), keeper_(keeper), snapshots_(snapshots), steps_(steps),
    arrangement_(arrangement) {}

std::vector<DisplayLayoutDivider> PointerActions::dividers() const {
    std::vector<DisplayLayoutDivider> all;
    for (const auto& screen : *state_.screens) {
        const DisplayID id = displayID(screen);
        if (focusMode_.ownsDisplay(id)) continue;
        const auto here = geometry_.dividersOn(id);
        all.insert(all.end(), here.begin(), here.end());
    }
    return all;
}

Outcome PointerActions::beginDividerDrag(const DisplayLayoutDivider& target) {
    if (!access_.mayMoveWindows()) return access_.refuseSilently("Windows cannot be moved now");
    const Screen* screen = geometry_.screenOf(target.displayID);
    if (!screen || geometry_.layoutOn(*screen).id != target.layoutID) return access_.refuseSilently(kDividerGone);
    steps_.abandonDrags();
    geometry_.layouts().invalidate(target.displayID);
    // The handle may be older than the current minimum sizes; the weights must respect the current ones.
    const auto now = geometry_.dividersOn(target.displayID);
    const auto current =
        std::ranges::find_if(now, [&](const DisplayLayoutDivider& divider) { return isSameDivider(divider, target); });
    if (current == now.end()) return access_.refuseSilently(kDividerGone);
    std::map<WindowID, CGRect> frames;
    for (const auto& [tile, windowID] : assignments_.assignedWindowIDs) {
        const ManagedWindow* window = liveWindows_.find(windowID);
        if (window && window->frame && geometry_.screenOfTarget(tile) == screen) frames[windowID] = *window->frame;
    }
    pointer_.beginDividerDrag(*current, state_.profile->weights(target.displayID, target.layoutID),
                              snapshots_.capture(), std::move(frames));
    return Outcome::done();
}

void PointerActions::updateDividerDrag(const DisplayLayoutDivider& target, double translationPoints) {
    if (!pointer_.isDragging(target)) return;
    pointer_.noteMovement();
    pointer_.moveDivider(translationPoints);
}

void PointerActions::applyDividerDrag() {
    if (!pointer_.takeDividerTranslation()) return;
    const ActiveDividerDrag& drag = *pointer_.dividerDrag();
    geometry_.layouts().setTransientWeights(drag.target.displayID, drag.target.layoutID, drag.overrides);
    writeInteractiveFrames(drag.target.displayID);
    keeper_.raiseRevision(); // the handles and the overlay follow the frames written above
}

void PointerActions::writeInteractiveFrames(const DisplayID& id) {
    const RequestBatch::Scope batch(requests_);
    const Screen* screen = geometry_.screenOf(id);
    if (!screen) return;
    const auto frames = geometry_.framesOfTiledWindows(*screen);
    for (const ManagedWindow& window : liveWindows_) {
        const auto frame = frames.find(window.id);
        if (frame == frames.end() || presenter_.isLeftAlone(window)) continue;
        if (!pointer_.noteDividerFrame(window.id, frame->second)) continue;
        windowService_.setFrameInteractive(window, frame->second);
        liveWindows_.noteFrame(window.id, frame->second);
    }
}

void PointerActions::endDividerDrag(const DisplayLayoutDivider& target) {
    if (!pointer_.isDragging(target)) return;
    frames_.notePointer(services_.queue.uptime());
    applyDividerDrag();
    auto ended = pointer_.endDividerDrag();
    const ActiveDividerDrag& drag = ended->drag;
    const DisplayID id = drag.target.displayID;
    geometry_.layouts().clearTransientWeights(id);
    if (drag.didChange()) {
        steps_.pushUndoSnapshot({std::string(action::EndDividerDrag::kTraits.undoLabel), geometry_.applicationsOn(id)},
                                std::move(ended->before));
        keeper_.storeWeights(id, drag.target.layoutID, drag.overrides);
    }
    keeper_.layoutChanged(id);
    verifyFrames(id, ended->frames);
    pointer_.resumePollsAfter(kResumeDelay);
}

void PointerActions::cancelDividerDrag() {
    const ActiveDividerDrag* drag = pointer_.dividerDrag();
    if (!drag) return;
    const DisplayLayoutDivider target = drag->target;
    updateDividerDrag(target, 0);
    endDividerDrag(target);
}

/// Leaving focus mode may change the minimum sizes of the neighbors, so the divider is looked up after that.
Outcome PointerActions::moveDivider(const DisplayLayoutDivider& target, double translationPoints) {
    const auto find = [&] {
        const auto all = geometry_.dividersOn(target.displayID);
        const auto found = std::ranges::find_if(all, [&](const DisplayLayoutDivider& each) {
            return each.divider.splitID == target.divider.splitID &&
                   each.divider.boundaryIndex == target.divider.boundaryIndex;
        });
        return found == all.end() ? std::nullopt : std::optional(*found);
    };
    const auto placeOf = [](const LayoutDivider& divider) {
        return divider.axis == LayoutAxis::horizontal ? minX(divider.frame) : minY(divider.frame);
    };
    const auto divider = find();
    if (!divider) return access_.refuseSilently(kDividerGone);
    if (auto begun = beginDividerDrag(*divider); !begun) return begun;
    updateDividerDrag(*divider, translationPoints);
    endDividerDrag(*divider);
    const auto after = find();
    const double moved = after ? placeOf(after->divider) - placeOf(divider->divider) : 0;
    if (moved == 0 && std::abs(translationPoints) >= 1) {
        return access_.refuseSilently("The divider has no room to move that way");
    }
    return Outcome::done().with(DividerMovement{moved});
}

Outcome PointerActions::resetDivider(const DisplayLayoutDivider& target) {
    LayoutWeightOverrides weights = state_.profile->weights(target.displayID, target.layoutID);
    if (!geometry_.screenOf(target.displayID) || weights.splits.erase(target.divider.splitID) == 0)
        return access_.refuseSilently("The divider is where its layout puts it");
    steps_.pushUndoSnapshot(
        {std::string(action::ResetDivider::kTraits.undoLabel), geometry_.applicationsOn(target.displayID)});
    keeper_.storeWeights(target.displayID, target.layoutID, std::move(weights));
    keeper_.layoutChanged(target.displayID);
    return Outcome::done();
}

/// Frames written during the drag are not verified, so every window of the display is placed again with verification.
void PointerActions::verifyFrames(const DisplayID& id, const std::map<WindowID, CGRect>& written) {
    for (const auto& [windowID, frame] : written) {
        const ManagedWindow* window = liveWindows_.find(windowID);
        const auto target = geometry_.frameForWindow(windowID);
        const auto tile = assignments_.targetOf(windowID);
        const Screen* screen = tile ? geometry_.screenOfTarget(*tile) : nullptr;
        if (!window || !target || !screen || displayID(*screen) != id || presenter_.isLeftAlone(*window)) continue;
        presenter_.writeFrame(*window, *target, AccessibilityWindowService::BringToFront::no);
    }
}

Outcome PointerActions::pressWindow(const WindowID& windowID) {
    // The button is down on the divider's handle. The press may be reported when the pointer is over a neighbor, whose
    // frame then changes with the divider.
    if (pointer_.dividerDrag() && pointer_.isPausingPolls()) return Outcome::refused("A divider is being dragged");
    frames_.notePointer(services_.queue.uptime());
    pointer_.press(windowID, finder_.currentFrame(windowID));
    windowService_.cancelPlacement(windowID);
    return Outcome::done();
}

void PointerActions::releaseWindow() {
    const auto held = pointer_.release();
    frames_.notePointer(services_.queue.uptime());
    const ManagedWindow* window = held ? liveWindows_.find(held->windowID) : nullptr;
    if (!window || !access_.mayMoveWindows()) return;
    const auto now = windowService_.readFrame(window->element);
    if (!now) return;
    liveWindows_.noteFrame(held->windowID, *now);
    // A window that the user has moved gets all attempts again.
    if (!held->frame || !nearlyEqual(*held->frame, *now, kRoundingPoints)) {
        frames_.forgetRefusal(held->windowID);
        returnZoomedWindow();
    }
    if (pointer_.isPausingPolls()) return; // the end of the pause places all windows
    keeper_.commit({});
}

Outcome PointerActions::beginWindowDrag(const WindowID& windowID, const CGRect& frameBefore) {
    const ManagedWindow* window = liveWindows_.find(windowID);
    if (!window || window->isFullScreen || window->isElsewhere || !access_.mayMoveWindows() ||
        focusMode_.isZoomed(windowID)) {
        return Outcome::refused("The window cannot be moved now");
    }
    steps_.closeFocusMode();
    (void)pointer_.release(); // the press has become a drag
    steps_.abandonDrags();
    WorkspaceUndoSnapshot before = snapshots_.capture();
    before.windowFrames[windowID] = frameBefore;
    frames_.forgetRefusal(windowID); // the refusal concerned the frame before the drag
    windowService_.cancelPlacement(windowID);
    pointer_.beginWindowDrag(windowID, std::move(before));
    return Outcome::done();
}

void PointerActions::updateWindowDrag(CGPoint pointer, action::WindowDragKind kind, action::DropMode mode) {
    const auto dragged = pointer_.draggedWindow();
    if (!dragged) return;
    pointer_.noteMovement();
    const bool takesTile = kind == action::WindowDragKind::move && mode == action::DropMode::intoTile;
    state_.dropTarget.set(takesTile ? geometry_.dropTarget(*dragged, pointer) : std::nullopt);
}

void PointerActions::endWindowDrag(CGPoint pointer, action::WindowDragKind kind, action::DropMode mode) {
    (void)pointer_.release();
    auto drag = pointer_.endWindowDrag();
    if (!drag) return returnZoomedWindow(); // focus mode may have begun during the drag
    const WindowID windowID = drag->windowID;
    frames_.notePointer(services_.queue.uptime());
    state_.dropTarget.set(std::nullopt);
    const ManagedWindow* window = liveWindows_.find(windowID);
    if (window) {
        const auto before = drag->before.windowFrames.find(windowID);
        if (const auto now = windowService_.readFrame(window->element)) liveWindows_.noteFrame(windowID, *now);
        const bool hadFrame = before != drag->before.windowFrames.end();
        if (kind == action::WindowDragKind::move) {
            dropWindow(ManagedWindow(*window), pointer, mode, std::move(drag->before));
        } else if (hadFrame && assignments_.isAssigned(windowID)) {
            const CGRect frameBefore = before->second;
            resizeTileLike(ManagedWindow(*window), frameBefore, std::move(drag->before));
        }
    }
    keeper_.commit({});
    pointer_.resumePollsAfter(kResumeDelay);
}

/// The zoomed window cannot be dragged to a tile. Requests its frame again if the user has moved it.
void PointerActions::returnZoomedWindow() {
    const ManagedWindow* window = focusMode_.isOn() ? liveWindows_.find(focusMode_.mode()->windowID) : nullptr;
    const auto frame = window ? geometry_.zoomFrame(focusMode_.mode()->displayID) : std::nullopt;
    const auto now = frame ? windowService_.readFrame(window->element) : std::nullopt;
    if (!now || !access_.mayMoveWindows()) return;
    const CGRect wanted = geometry_.largestAllowedFrame(*window, *frame);
    if (nearlyEqual(*now, wanted, kFrameTolerancePoints)) return;
    presenter_.writeFrame(ManagedWindow(*window), wanted, AccessibilityWindowService::BringToFront::no);
}

void PointerActions::cancelWindowDrag() {
    if (!pointer_.isOnWindow()) return;
    frames_.notePointer(services_.queue.uptime());
    steps_.abandonDrags();
}

void PointerActions::dropWindow(const ManagedWindow& window, CGPoint pointer, action::DropMode mode,
                                WorkspaceUndoSnapshot before) {
    if (mode == action::DropMode::floating) {
        if (!assignments_.isInAnyTile(window.id)) return;
        steps_.pushUndoSnapshot({"float", {window.applicationName}}, std::move(before));
        keeper_.noteMovedByUser(window.id);
        const TileAssignments tilesBefore = assignments_;
        assignments_.remove(window.id);
        keeper_.bringNextForward(tilesBefore);
        messages_.show(window.applicationName + " floats until the next arrangement");
        return;
    }
    const auto target = geometry_.dropTarget(window.id, pointer);
    if (!target) return; // the caller's commit moves the window back to its tile, if it has one
    const auto covering = geometry_.coveringFor(window, *target);
    if (!covering) return;
    steps_.pushUndoSnapshot({"drop on a tile", {window.applicationName}}, std::move(before));
    keeper_.noteMovedByUser(window.id);
    const TileAssignments tilesBefore = assignments_;
    keeper_.place(window, *covering, AccessibilityWindowService::BringToFront::yes);
    keeper_.bringNextForward(tilesBefore);
    arrangement_.learnPlacementByUser(window, *target);
    messages_.show("Moved " + window.applicationName + " to " + covering->targets.front().slot.name);
}

/// Moves the dividers at the resized edges, as far as the minimum sizes allow, so that the tile has the window's size.
void PointerActions::resizeTileLike(const ManagedWindow& window, const CGRect& frameBefore,
                                    WorkspaceUndoSnapshot before) {
    const auto anchor = assignments_.targetOf(window.id);
    const Screen* screen = anchor ? geometry_.screenOfTarget(*anchor) : nullptr;
    if (!screen || !window.frame) return;
    const double top = geometry_.firstScreenMaxY();
    const CGRect visible = screen->visibleFrame;
    std::vector<CGRect> windowCells, otherCells;
    for (const auto& tile : geometry_.tiles()) {
        if (tile.displayID != displayID(*screen)) continue;
        (tile.windowID == window.id ? windowCells : otherCells).push_back(inLayout(tile.frameOnScreen, visible));
    }
    if (windowCells.empty()) return;
    const CGRect cell = frameOfSpan(windowCells, otherCells);
    const DisplayID id = displayID(*screen);
    const std::string layoutID = geometry_.layoutOn(*screen).id;
    const auto moves =
        dividersMovedBy(cell, inLayout(flipped(frameBefore, top), visible),
                        inLayout(flipped(*window.frame, top), visible), geometry_.solvedTiles(*screen).dividers);
    LayoutWeightOverrides pulled;
    for (const auto& move : moves) {
        LayoutDivider divider = move.divider;
        // If both edges move dividers of one split, the second movement starts from the result of the first.
        const auto other = pulled.splits.find(divider.splitID);
        if (other != pulled.splits.end()) divider.branchLengths = other->second;
        if (const auto result = draggedWeights(divider, move.translationPoints))
            pulled.splits[divider.splitID] = *result;
    }
    LayoutWeightOverrides weights = state_.profile->weights(id, layoutID);
    const LayoutWeightOverrides weightsBefore = weights;
    for (auto& [splitID, lengths] : pulled.splits) weights.splits[splitID] = std::move(lengths);
    if (weights == weightsBefore) return;
    steps_.pushUndoSnapshot({"resize by hand", geometry_.applicationsOn(id)}, std::move(before));
    keeper_.storeWeights(id, layoutID, std::move(weights));
    keeper_.layoutChanged(id);
}

} // namespace kova
