// The mouse, and the handles of dividers.
#include "platform/simulated/SimulatedDesktop.h"
#include "windowing/DividerGestureRecognizer.h"

#include <algorithm>
#include <cmath>
#include <set>
#include <utility>

namespace kova {

namespace {

CGRect draggedFrame(const CGRect& frame, WindowPart grip, double dx, double dy) {
    switch (grip) {
    case WindowPart::nothing:
        return frame;
    case WindowPart::titleBar:
        return makeRect(minX(frame) + dx, minY(frame) + dy, frame.size.width, frame.size.height);
    case WindowPart::leftEdge:
        return makeRect(minX(frame) + dx, minY(frame), frame.size.width - dx, frame.size.height);
    case WindowPart::rightEdge:
        return makeRect(minX(frame), minY(frame), frame.size.width + dx, frame.size.height);
    case WindowPart::topEdge:
        return makeRect(minX(frame), minY(frame) + dy, frame.size.width, frame.size.height - dy);
    case WindowPart::bottomEdge:
        return makeRect(minX(frame), minY(frame), frame.size.width, frame.size.height + dy);
    }
    return frame;
}

} // namespace

const DividerHandle* SimulatedDesktop::handleAt(CGPoint point) const {
    const auto found = std::find_if(handles_.begin(), handles_.end(), [&](const DividerHandle& handle) {
        return containsPoint(pressFrame(handle), onScreen(point));
    });
    return found == handles_.end() ? nullptr : &*found;
}

void SimulatedDesktop::postEvent(PointerEvent::Kind kind, CGPoint point, ShiftKey shift) {
    if (delaysPressReport_) return;
    queue_.post(lifetime_.guard([this, event = PointerEvent{kind, onScreen(point), shift == ShiftKey::down}] {
        pointerObservers_.notify(event);
    }));
}

void SimulatedDesktop::postEvent(DividerHandleEvent::Kind kind, const std::string& handleID, CGPoint point) {
    queue_.post(lifetime_.guard(
        [this, event = DividerHandleEvent{kind, handleID, onScreen(point)}] { handleObservers_.notify(event); }));
}

void SimulatedDesktop::pressAt(CGPoint point, WindowPart grip) {
    pointerOnDesktop_ = point;
    hold_ = Hold{.grip = grip, .start = point};
    postEvent(PointerEvent::Kind::pressed, point);
    for (const auto number : stacking_) {
        const auto& window = *findWindow(number);
        if (!isOnScreen(window) || !containsPoint(window.frame, point)) continue;
        hold_->window = number;
        hold_->frame = window.frame;
        return;
    }
    const DividerHandle* handle = handleAt(point);
    if (!handle) return;
    hold_->handleID = handle->id;
    const auto before = std::exchange(lastClick_, std::nullopt);
    hold_->isOver = before && before->handleID == handle->id && queue_.uptime() - before->when <= kDoubleClickTime;
    if (!hold_->isOver) lastClick_ = Click{handle->id, queue_.uptime()};
    postEvent(hold_->isOver ? DividerHandleEvent::Kind::doubleClicked : DividerHandleEvent::Kind::pressed, handle->id,
              point);
}

void SimulatedDesktop::reportPress() {
    delaysPressReport_ = false;
    if (hold_) postEvent(PointerEvent::Kind::pressed, pointerOnDesktop_.value_or(hold_->start));
}

void SimulatedDesktop::movePointer(CGPoint point, ShiftKey shift) {
    const auto handleIDAt = [&](CGPoint place) {
        const DividerHandle* handle = handleAt(place);
        return handle ? std::optional(handle->id) : std::nullopt;
    };
    // A handle that is held gets all pointer events until it is released.
    const bool mayCross = !hold_ || !hold_->handleID;
    const auto former = mayCross && pointerOnDesktop_ ? handleIDAt(*pointerOnDesktop_) : std::nullopt;
    const auto entered = mayCross ? handleIDAt(point) : std::nullopt;
    pointerOnDesktop_ = point;
    if (former && former != entered) postEvent(DividerHandleEvent::Kind::left, *former, point);
    if (entered && former != entered) postEvent(DividerHandleEvent::Kind::entered, *entered, point);
    if (!hold_) return;
    const double dx = point.x - hold_->start.x, dy = point.y - hold_->start.y;
    if (std::hypot(dx, dy) > kDoubleClickTolerancePoints) lastClick_.reset();
    if (SimulatedWindow* window = findWindow(hold_->window)) {
        setFrameOf(*window, draggedFrame(hold_->frame, hold_->grip, dx, dy));
    }
    if (hold_->handleID && !hold_->isOver) postEvent(DividerHandleEvent::Kind::moved, *hold_->handleID, point);
    postEvent(PointerEvent::Kind::moved, point, shift);
}

void SimulatedDesktop::releaseButton(ShiftKey shift) {
    const auto hold = std::exchange(hold_, std::nullopt);
    if (!hold) return;
    const CGPoint point = pointerOnDesktop_.value_or(hold->start);
    if (hold->handleID && !hold->isOver) postEvent(DividerHandleEvent::Kind::released, *hold->handleID, point);
    postEvent(PointerEvent::Kind::released, point, shift);
}

void SimulatedDesktop::pressEscape() {
    if (!hold_ || !hold_->handleID || std::exchange(hold_->isOver, true)) return;
    postEvent(DividerHandleEvent::Kind::canceled, *hold_->handleID, pointerOnDesktop_.value_or(hold_->start));
}

// The platform interfaces

Subscription SimulatedDesktop::observePointer(std::function<void(const PointerEvent&)> observer) {
    return pointerObservers_.add(std::move(observer));
}

void SimulatedDesktop::showHandles(const std::vector<DividerHandle>& handles) {
    requireMainThread("showHandles");
    std::set<std::string> ids;
    for (const DividerHandle& handle : handles) {
        if (!ids.insert(handle.id).second) violations_.push_back("two handles are called " + handle.id);
        if (!isFinite(handle.frame)) violations_.push_back("impossible frame of the handle " + handle.id);
    }
    handles_ = handles;
    // Removing a handle ends its drag.
    if (hold_ && hold_->handleID && !ids.contains(*hold_->handleID)) pressEscape();
}

Subscription SimulatedDesktop::observeHandles(std::function<void(const DividerHandleEvent&)> observer) {
    return handleObservers_.add(std::move(observer));
}

} // namespace kova
