#include "app/WindowDragCoordinator.h"

#include "support/SameFrame.h"
#include "windowing/WindowHold.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

namespace kova {

WindowDragCoordinator::WindowDragCoordinator(WorkspaceController& workspace, PointerMonitorServicing& pointer,
                                             OverlayBoard& board, MainQueue& queue) :
    workspace_(workspace),
    pointer_(pointer), board_(board), queue_(queue) {
    board_.show(OverlaySection::drag, [this](OverlayContents& out) { out.drag = shownDrag_; });
}

WindowDragCoordinator::~WindowDragCoordinator() {
    removeMonitor();
    board_.close(OverlaySection::drag);
}

void WindowDragCoordinator::installMonitor() {
    subscription_ = pointer_.observePointer([this](const PointerEvent& event) { handle(event); });
}

void WindowDragCoordinator::removeMonitor() {
    subscription_ = {};
    letGo_.reset();
    contentPress_.reset();
    if (grip_) workspace_.cancelWindowDrag();
    grip_.reset();
    showDrag(std::nullopt);
}

std::optional<OverlayDrag> WindowDragCoordinator::dragAt(CGPoint location) const {
    const bool isMoving = grip_ && !letGo_ && grip_->movement == WorkspaceController::WindowDragKind::move;
    if (!isMoving) return std::nullopt;
    return OverlayDrag{grip_->windowID, displayUnder(location), *workspace_.state().dropTargetSlotID};
}

void WindowDragCoordinator::showDrag(std::optional<OverlayDrag> drag) {
    if (drag == shownDrag_) return;
    shownDrag_ = std::move(drag);
    board_.refresh(OverlaySection::drag);
}

std::optional<std::string> WindowDragCoordinator::displayUnder(CGPoint location) const {
    for (const Screen& screen : *workspace_.state().screens) {
        if (containsPoint(screen.frame, location)) return displayID(screen);
    }
    return std::nullopt;
}

void WindowDragCoordinator::handle(const PointerEvent& event) {
    switch (event.kind) {
    case PointerEvent::Kind::pressed:
        return pressed(event.location);
    case PointerEvent::Kind::moved:
        moved(event.location);
        return showDrag(dragAt(event.location));
    case PointerEvent::Kind::released:
        return released(event.location, event.isShiftDown);
    }
}

void WindowDragCoordinator::pressed(CGPoint location) {
    // The hand is faster than the window, or a release was never told.
    if (grip_ && !letGo_) letGo_ = LetGo{location, WorkspaceController::LettingGo::intoTile};
    finishLettingGo();
    const bool asksAtOnce = pointer_.dragsWindowsByAnyPoint() || isNearKnownTitleOrEdge(location);
    contentPress_ = asksAtOnce ? std::nullopt : std::optional(location);
    if (asksAtOnce) takeHold(location);
}

bool WindowDragCoordinator::isNearKnownTitleOrEdge(CGPoint location) const {
    const auto& screens = *workspace_.state().screens;
    if (screens.empty()) return false;
    std::vector<CGRect> frames;
    for (const ManagedWindow& window : workspace_.liveWindows()) {
        if (window.isVisible && window.frame) frames.push_back(*window.frame);
    }
    return isNearTitleOrEdge(flipped(location, maxY(screens.front().frame)), frames);
}

void WindowDragCoordinator::takeHold(CGPoint location) {
    const auto windowID = workspace_.managedWindowUnder(location);
    const auto frame = windowID ? workspace_.currentFrame(*windowID) : std::nullopt;
    if (!frame) return;
    grip_ = Grip{*windowID, *frame, location};
    workspace_.holdWindow(*windowID);
}

/// The window may have moved already: its frame at the press is the one last known.
void WindowDragCoordinator::takeHoldByContent(CGPoint location) {
    if (!contentPress_) return;
    const CGPoint start = *contentPress_;
    if (std::hypot(location.x - start.x, location.y - start.y) < kContentDragPoints) return;
    contentPress_.reset();
    const auto windowID = workspace_.managedWindowUnder(location);
    if (!windowID) return;
    const auto known = std::ranges::find(workspace_.liveWindows(), *windowID, &ManagedWindow::id);
    if (known == workspace_.liveWindows().end() || !known->frame) return;
    grip_ = Grip{*windowID, *known->frame, start};
    if (!movement()) {
        grip_.reset(); // a selection of text, and not a window that is dragged
        return;
    }
    workspace_.holdWindow(*windowID);
}

bool WindowDragCoordinator::isAtRest(CGPoint location) const {
    return std::hypot(location.x - grip_->pointer.x, location.y - grip_->pointer.y) <= kFrameTolerancePoints;
}

std::optional<WorkspaceController::WindowDragKind> WindowDragCoordinator::movement() const {
    const auto frame = workspace_.currentFrame(grip_->windowID);
    if (!frame || nearlyEqual(*frame, grip_->frame, kFrameTolerancePoints)) return std::nullopt;
    const bool isResized = std::abs(frame->size.width - grip_->frame.size.width) > kFrameTolerancePoints ||
                           std::abs(frame->size.height - grip_->frame.size.height) > kFrameTolerancePoints;
    return isResized ? WorkspaceController::WindowDragKind::resize : WorkspaceController::WindowDragKind::move;
}

void WindowDragCoordinator::moved(CGPoint location) {
    if (!grip_) takeHoldByContent(location);
    if (!grip_) return;
    // A window that moves under a hand that rests is moved by somebody else.
    if (!grip_->isDragging && isAtRest(location)) return;
    const auto what = movement();
    if (!what) return;
    if (!grip_->isDragging) grip_->isDragging = workspace_.beginWindowDrag(grip_->windowID, grip_->frame);
    if (!grip_->isDragging) return;
    workspace_.updateWindowDrag(location, *what);
    grip_->movement = *what;
}

void WindowDragCoordinator::released(CGPoint location, bool isShiftDown) {
    moved(location);
    contentPress_.reset();
    showDrag(std::nullopt);
    if (!grip_) return;
    if (!grip_->isDragging && isAtRest(location)) return letGoUnmoved(); // a click
    const auto lettingGo =
        isShiftDown ? WorkspaceController::LettingGo::floating : WorkspaceController::LettingGo::intoTile;
    letGo_ = LetGo{location, lettingGo};
    queue_.after(kSettlingTime, lifetime_.guard([this] { finishLettingGo(); }));
}

/// The hand was on the window, but has not moved it.
void WindowDragCoordinator::letGoUnmoved() {
    grip_.reset();
    workspace_.letGoOfWindow();
}

void WindowDragCoordinator::finishLettingGo() {
    if (!grip_ || !letGo_) return;
    const LetGo where = *std::exchange(letGo_, std::nullopt);
    moved(where.location); // a window that is slower than a quick hand has moved only now
    if (!grip_->isDragging) return letGoUnmoved();
    const auto what = movement().value_or(WorkspaceController::WindowDragKind::move);
    grip_.reset();
    workspace_.endWindowDrag(where.location, what, where.lettingGo);
}

} // namespace kova
