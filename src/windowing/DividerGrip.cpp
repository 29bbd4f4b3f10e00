#include "windowing/DividerGrip.h"

#include <algorithm>

namespace kova {

using Kind = DividerHandleEvent::Kind;

CGRect grippableFrame(const DividerHandle& handle) {
    CGRect frame = handle.frame;
    auto& start = handle.axis == LayoutAxis::horizontal ? frame.origin.x : frame.origin.y;
    auto& thickness = handle.axis == LayoutAxis::horizontal ? frame.size.width : frame.size.height;
    const double missing = std::max(0.0, kThinnestHandle - thickness);
    start -= missing / 2;
    thickness += missing;
    return frame;
}

std::optional<DividerHandleEvent> DividerGrip::press(const std::string& handleID, int clickCount, CGPoint location) {
    if (clickCount == 2) {
        handleID_.reset();
        return DividerHandleEvent{Kind::doubleClicked, handleID, location};
    }
    handleID_ = handleID;
    return tell(Kind::pressed, location);
}

std::optional<DividerHandleEvent> DividerGrip::move(CGPoint location) {
    return tell(Kind::moved, location);
}

std::optional<DividerHandleEvent> DividerGrip::release(CGPoint location) {
    return letGo(Kind::released, location);
}

std::optional<DividerHandleEvent> DividerGrip::cancel(CGPoint location) {
    return letGo(Kind::cancelled, location);
}

std::optional<DividerHandleEvent> DividerGrip::keepOnly(std::span<const DividerHandle> handles, CGPoint location) {
    const bool isKept = std::ranges::any_of(handles, [this](const auto& handle) { return handle.id == handleID_; });
    return isKept ? std::nullopt : cancel(location);
}

std::optional<DividerHandleEvent> DividerGrip::tell(Kind kind, CGPoint location) const {
    if (!handleID_) return std::nullopt;
    return DividerHandleEvent{kind, *handleID_, location};
}

std::optional<DividerHandleEvent> DividerGrip::letGo(Kind kind, CGPoint location) {
    auto event = tell(kind, location);
    handleID_.reset();
    return event;
}

} // namespace kova
