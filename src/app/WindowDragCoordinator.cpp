#include "app/WindowDragCoordinator.h"

#include "support/SameFrame.h"
#include "windowing/WindowDragRegion.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

namespace kova {

WindowDragCoordinator::WindowDragCoordinator(WorkspaceController& workspace, PointerMonitorServicing& pointer,
                                             OverlayBoard& board, MainQueue& queue) :
    workspace_(workspace),
    pointer_(pointer), board_(board), queue_(queue) {
    board_.provide(OverlaySection::drag, [this](OverlayContents& out) { out.drag = shownDrag_; });
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
    release_.reset();
    contentPress_.reset();
    if (press_) workspace_.perform(action::CancelWindowDrag{});
    press_.reset();
    showDrag(std::nullopt);
}

std::optional<OverlayDrag> WindowDragCoordinator::dragAt(CGPoint location) const {
    const bool isMoving = press_ && !release_ && press_->movement == action::WindowDragKind::move;
    // No tile takes a window that will float.
    if (!isMoving || press_->mode == action::DropMode::floating) return std::nullopt;
    return OverlayDrag{press_->windowID, displayUnder(location), *workspace_.state().dropTarget};
}

void WindowDragCoordinator::showDrag(std::optional<OverlayDrag> drag) {
    if (drag == shownDrag_) return;
    shownDrag_ = std::move(drag);
    board_.refresh(OverlaySection::drag);
}

std::optional<DisplayID> WindowDragCoordinator::displayUnder(CGPoint location) const {
    for (const Screen& screen : *workspace_.state().screens) {
        if (containsPoint(screen.frame, location)) return displayID(screen);
    }
    return std::nullopt;
}

void WindowDragCoordinator::handle(const PointerEvent& event) {
    const auto mode = event.isShiftDown ? action::DropMode::floating : action::DropMode::intoTile;
    switch (event.kind) {
    case PointerEvent::Kind::pressed:
        return pressed(event.location);
    case PointerEvent::Kind::moved:
        moved(event.location, mode);
        return showDrag(dragAt(event.location));
    case PointerEvent::Kind::released:
        return released(event.location, mode);
    }
}

void WindowDragCoordinator::pressed(CGPoint location) {
    // The window of the previous press may still be moving to its final frame, or the event of the release was lost.
    if (press_ && !release_) release_ = Release{location, action::DropMode::intoTile};
    finishRelease();
    const bool beginsAtOnce = pointer_.dragsWindowsByAnyPoint() || isNearKnownTitleOrEdge(location);
    contentPress_ = beginsAtOnce ? std::nullopt : std::optional(location);
    if (beginsAtOnce) beginPress(location);
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

void WindowDragCoordinator::beginPress(CGPoint location) {
    const auto windowID = workspace_.managedWindowUnder(location);
    const auto frame = windowID ? workspace_.currentFrame(*windowID) : std::nullopt;
    if (!frame) return;
    if (workspace_.perform(action::PressWindow{*windowID})) press_ = Press{*windowID, *frame, location};
}

/// Begins a press whose location did not tell whether the window is dragged. The window may have moved already, so the
/// last polled frame counts as its frame at the press.
void WindowDragCoordinator::beginPressByContent(CGPoint location) {
    if (!contentPress_) return;
    const CGPoint start = *contentPress_;
    if (std::hypot(location.x - start.x, location.y - start.y) < kContentDragPoints) return;
    contentPress_.reset();
    const auto windowID = workspace_.managedWindowUnder(location);
    if (!windowID) return;
    const auto known = std::ranges::find(workspace_.liveWindows(), *windowID, &ManagedWindow::id);
    if (known == workspace_.liveWindows().end() || !known->frame) return;
    press_ = Press{*windowID, *known->frame, start};
    if (!movement()) {
        press_.reset(); // a selection of text, not the drag of a window
        return;
    }
    if (!workspace_.perform(action::PressWindow{*windowID})) press_.reset();
}

bool WindowDragCoordinator::isUnmoved(CGPoint location) const {
    return std::hypot(location.x - press_->pointer.x, location.y - press_->pointer.y) <= kFrameTolerancePoints;
}

std::optional<action::WindowDragKind> WindowDragCoordinator::movement() const {
    const auto frame = workspace_.currentFrame(press_->windowID);
    if (!frame || nearlyEqual(*frame, press_->frame, kFrameTolerancePoints)) return std::nullopt;
    const bool isResized = std::abs(frame->size.width - press_->frame.size.width) > kFrameTolerancePoints ||
                           std::abs(frame->size.height - press_->frame.size.height) > kFrameTolerancePoints;
    return isResized ? action::WindowDragKind::resize : action::WindowDragKind::move;
}

void WindowDragCoordinator::moved(CGPoint location, action::DropMode mode) {
    if (!press_) beginPressByContent(location);
    if (!press_) return;
    // A window that moves while the pointer does not is moved by a program, not by the user.
    if (!press_->isDragging && isUnmoved(location)) return;
    const auto kind = movement();
    if (!kind) return;
    if (!press_->isDragging)
        press_->isDragging = workspace_.perform(action::BeginWindowDrag{press_->windowID, press_->frame});
    if (!press_->isDragging) return;
    workspace_.perform(action::UpdateWindowDrag{location, *kind, mode});
    press_->movement = *kind;
    press_->mode = mode;
}

void WindowDragCoordinator::released(CGPoint location, action::DropMode mode) {
    moved(location, mode);
    contentPress_.reset();
    showDrag(std::nullopt);
    if (!press_) return;
    if (!press_->isDragging && isUnmoved(location)) return endUnmovedPress(); // a click
    release_ = Release{location, mode};
    queue_.after(kSettlingTime, lifetime_.guard([this] { finishRelease(); }));
}

/// The window was pressed but not moved.
void WindowDragCoordinator::endUnmovedPress() {
    press_.reset();
    workspace_.perform(action::ReleaseWindow{});
}

void WindowDragCoordinator::finishRelease() {
    if (!press_ || !release_) return;
    const Release release = *std::exchange(release_, std::nullopt);
    moved(release.location, release.mode); // a window may follow the pointer with a delay
    if (!press_->isDragging) return endUnmovedPress();
    const auto kind = movement().value_or(action::WindowDragKind::move);
    press_.reset();
    workspace_.perform(action::EndWindowDrag{release.location, kind, release.mode});
    board_.refresh(OverlaySection::displays); // the section contains the frames of floating windows
}

} // namespace kova
