#include "windowing/DividerGestureRecognizer.h"

#include <algorithm>

namespace kova {

using Kind = DividerHandleEvent::Kind;

namespace {

CGRect thickened(const DividerHandle& handle, double points) {
    CGRect frame = handle.frame;
    (handle.axis == LayoutAxis::horizontal ? frame.origin.x : frame.origin.y) -= points / 2;
    (handle.axis == LayoutAxis::horizontal ? frame.size.width : frame.size.height) += points;
    return frame;
}

double thickness(const DividerHandle& handle) {
    return handle.axis == LayoutAxis::horizontal ? handle.frame.size.width : handle.frame.size.height;
}

} // namespace

CGRect pressFrame(const DividerHandle& handle) {
    return thickened(handle, std::max(0.0, kThinnestHandle - thickness(handle)));
}

CGRect gapFrame(const DividerHandle& handle) {
    return thickened(handle, std::max(2 * handle.insetPoints, kThinnestHandle - thickness(handle)));
}

std::optional<DividerHandleEvent> DividerGestureRecognizer::press(const std::string& handleID, int clickCount,
                                                                  CGPoint location) {
    if (clickCount == 2) {
        handleID_.reset();
        return DividerHandleEvent{Kind::doubleClicked, handleID, location};
    }
    handleID_ = handleID;
    return makeEvent(Kind::pressed, location);
}

std::optional<DividerHandleEvent> DividerGestureRecognizer::move(CGPoint location) {
    return makeEvent(Kind::moved, location);
}

std::optional<DividerHandleEvent> DividerGestureRecognizer::release(CGPoint location) {
    return end(Kind::released, location);
}

std::optional<DividerHandleEvent> DividerGestureRecognizer::cancel(CGPoint location) {
    return end(Kind::canceled, location);
}

std::optional<DividerHandleEvent> DividerGestureRecognizer::keepOnly(std::span<const DividerHandle> handles,
                                                                     CGPoint location) {
    const bool isKept = std::ranges::any_of(handles, [this](const auto& handle) { return handle.id == handleID_; });
    return isKept ? std::nullopt : cancel(location);
}

std::optional<DividerHandleEvent> DividerGestureRecognizer::makeEvent(Kind kind, CGPoint location) const {
    if (!handleID_) return std::nullopt;
    return DividerHandleEvent{kind, *handleID_, location};
}

std::optional<DividerHandleEvent> DividerGestureRecognizer::end(Kind kind, CGPoint location) {
    auto event = makeEvent(kind, location);
    handleID_.reset();
    return event;
}

} // namespace kova
