#include "workspace/PointerInteraction.h"

#include "workspace/Renaming.h"

#include <utility>

namespace kova {

PointerInteraction::PointerInteraction(MainQueue& queue, std::function<void()> moveDivider,
                                       std::function<void()> resumed) :
    divider_(queue, std::move(moveDivider)),
    pause_(queue, std::move(resumed)) {}

bool PointerInteraction::isPressing(const WindowID& windowID) const {
    const auto* press = std::get_if<Press>(&gesture_);
    return press && press->windowID == windowID;
}

bool PointerInteraction::isDragging(const WindowID& windowID) const {
    const auto* drag = std::get_if<WindowDrag>(&gesture_);
    return drag && drag->windowID == windowID;
}

bool PointerInteraction::isDragging() const {
    return std::holds_alternative<WindowDrag>(gesture_) || std::holds_alternative<DraggingDivider>(gesture_);
}

bool PointerInteraction::isOnWindow() const {
    return std::holds_alternative<Press>(gesture_) || std::holds_alternative<WindowDrag>(gesture_);
}

void PointerInteraction::press(WindowID windowID, const std::optional<CGRect>& frame) {
    if (!isDragging()) gesture_ = Press{std::move(windowID), frame};
}

std::optional<PointerInteraction::Press> PointerInteraction::release() {
    auto* press = std::get_if<Press>(&gesture_);
    if (!press) return std::nullopt;
    auto released = std::move(*press);
    gesture_ = std::monostate{};
    return released;
}

void PointerInteraction::beginWindowDrag(WindowID windowID, WorkspaceUndoSnapshot before) {
    (void)divider_.end();
    gesture_ = WindowDrag{std::move(windowID), std::move(before)};
    pause_.begin();
}

std::optional<WindowID> PointerInteraction::draggedWindow() const {
    const auto* drag = std::get_if<WindowDrag>(&gesture_);
    return drag ? std::optional(drag->windowID) : std::nullopt;
}

std::optional<PointerInteraction::WindowDrag> PointerInteraction::endWindowDrag() {
    auto* drag = std::get_if<WindowDrag>(&gesture_);
    if (!drag) return std::nullopt;
    auto ended = std::move(*drag);
    gesture_ = std::monostate{};
    return ended;
}

void PointerInteraction::beginDividerDrag(const DisplayLayoutDivider& target, const LayoutWeightOverrides& weights,
                                          WorkspaceUndoSnapshot before, std::map<WindowID, CGRect> frames) {
    gesture_ = DraggingDivider{std::move(before), std::move(frames)};
    divider_.begin(target, weights);
    pause_.begin();
}

const ActiveDividerDrag* PointerInteraction::dividerDrag() const {
    return divider_.active() ? &*divider_.active() : nullptr;
}

bool PointerInteraction::noteDividerFrame(const WindowID& windowID, const CGRect& frame) {
    auto* dragging = std::get_if<DraggingDivider>(&gesture_);
    if (!dragging) return false;
    const auto [last, isFirst] = dragging->frames.try_emplace(windowID, frame);
    if (!isFirst && last->second == frame) return false;
    last->second = frame;
    return true;
}

std::optional<PointerInteraction::DividerMove> PointerInteraction::endDividerDrag() {
    auto* dragging = std::get_if<DraggingDivider>(&gesture_);
    auto drag = divider_.end();
    if (!dragging || !drag) return std::nullopt;
    DividerMove ended{std::move(*drag), std::move(dragging->before), std::move(dragging->frames)};
    gesture_ = std::monostate{};
    return ended;
}

bool PointerInteraction::abandon() {
    const bool heldPollsBack = pause_.isActive() || !std::holds_alternative<std::monostate>(gesture_);
    (void)divider_.end();
    gesture_ = std::monostate{};
    pause_.abandon();
    return heldPollsBack;
}

void PointerInteraction::rename(const WindowID& windowID, const WindowID& newID) {
    if (auto* press = std::get_if<Press>(&gesture_)) {
        if (press->windowID == windowID) press->windowID = newID;
    } else if (auto* drag = std::get_if<WindowDrag>(&gesture_)) {
        if (drag->windowID == windowID) drag->windowID = newID;
        drag->before.rename(windowID, newID);
    } else if (auto* divider = std::get_if<DraggingDivider>(&gesture_)) {
        divider->before.rename(windowID, newID);
        renameKey(divider->frames, windowID, newID);
    }
}

void PointerInteraction::renameDisplay(const DisplayID& displayID, const DisplayID& newID) {
    divider_.renameDisplay(displayID, newID);
    if (auto* drag = std::get_if<WindowDrag>(&gesture_)) {
        drag->before.renameDisplay(displayID, newID);
    } else if (auto* divider = std::get_if<DraggingDivider>(&gesture_)) {
        divider->before.renameDisplay(displayID, newID);
    }
}

} // namespace kova
