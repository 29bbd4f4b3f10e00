#include "workspace/PointerInteraction.h"

#include "workspace/Renaming.h"

#include <utility>

namespace kova {

PointerInteraction::PointerInteraction(MainQueue& queue, std::function<void()> moveDivider,
                                       std::function<void()> resumed) :
    divider_(queue, std::move(moveDivider)),
    pause_(queue, std::move(resumed)) {}

bool PointerInteraction::isPressing(const WindowID& windowID) const {
    const auto* press = std::get_if<Press>(&now_);
    return press && press->windowID == windowID;
}

bool PointerInteraction::isDragging(const WindowID& windowID) const {
    const auto* drag = std::get_if<WindowDrag>(&now_);
    return drag && drag->windowID == windowID;
}

bool PointerInteraction::isDragging() const {
    return std::holds_alternative<WindowDrag>(now_) || std::holds_alternative<DraggingDivider>(now_);
}

bool PointerInteraction::isOnWindow() const {
    return std::holds_alternative<Press>(now_) || std::holds_alternative<WindowDrag>(now_);
}

void PointerInteraction::press(WindowID windowID, const std::optional<CGRect>& frame) {
    if (!isDragging()) now_ = Press{std::move(windowID), frame};
}

std::optional<PointerInteraction::Press> PointerInteraction::release() {
    auto* press = std::get_if<Press>(&now_);
    if (!press) return std::nullopt;
    auto released = std::move(*press);
    now_ = std::monostate{};
    return released;
}

void PointerInteraction::beginWindowDrag(WindowID windowID, WorkspaceUndoSnapshot before) {
    (void)divider_.end();
    now_ = WindowDrag{std::move(windowID), std::move(before)};
    pause_.suspend();
}

std::optional<WindowID> PointerInteraction::draggedWindow() const {
    const auto* drag = std::get_if<WindowDrag>(&now_);
    return drag ? std::optional(drag->windowID) : std::nullopt;
}

std::optional<PointerInteraction::WindowDrag> PointerInteraction::endWindowDrag() {
    auto* drag = std::get_if<WindowDrag>(&now_);
    if (!drag) return std::nullopt;
    auto ended = std::move(*drag);
    now_ = std::monostate{};
    return ended;
}

void PointerInteraction::beginDividerDrag(const DisplayLayoutDivider& target, const LayoutWeightOverrides& weights,
                                          WorkspaceUndoSnapshot before, std::map<WindowID, CGRect> frames) {
    now_ = DraggingDivider{std::move(before), std::move(frames)};
    divider_.begin(target, weights);
    pause_.suspend();
}

const ActiveDividerDrag* PointerInteraction::dividerDrag() const {
    return divider_.active() ? &*divider_.active() : nullptr;
}

bool PointerInteraction::noteDividerFrame(const WindowID& windowID, const CGRect& frame) {
    auto* dragging = std::get_if<DraggingDivider>(&now_);
    if (!dragging) return false;
    const auto [last, isFirst] = dragging->frames.try_emplace(windowID, frame);
    if (!isFirst && last->second == frame) return false;
    last->second = frame;
    return true;
}

std::optional<PointerInteraction::DividerMove> PointerInteraction::endDividerDrag() {
    auto* dragging = std::get_if<DraggingDivider>(&now_);
    auto drag = divider_.end();
    if (!dragging || !drag) return std::nullopt;
    DividerMove ended{std::move(*drag), std::move(dragging->before), std::move(dragging->frames)};
    now_ = std::monostate{};
    return ended;
}

bool PointerInteraction::abandon() {
    const bool heldPollsBack = pause_.isSuspended() || !std::holds_alternative<std::monostate>(now_);
    (void)divider_.end();
    now_ = std::monostate{};
    pause_.abandon();
    return heldPollsBack;
}

void PointerInteraction::rename(const WindowID& windowID, const WindowID& newID) {
    if (auto* press = std::get_if<Press>(&now_)) {
        if (press->windowID == windowID) press->windowID = newID;
    } else if (auto* drag = std::get_if<WindowDrag>(&now_)) {
        if (drag->windowID == windowID) drag->windowID = newID;
        drag->before.rename(windowID, newID);
    } else if (auto* divider = std::get_if<DraggingDivider>(&now_)) {
        divider->before.rename(windowID, newID);
        renameKey(divider->frames, windowID, newID);
    }
}

void PointerInteraction::renameDisplay(const DisplayID& displayID, const DisplayID& newID) {
    divider_.renameDisplay(displayID, newID);
    if (auto* drag = std::get_if<WindowDrag>(&now_)) {
        drag->before.renameDisplay(displayID, newID);
    } else if (auto* divider = std::get_if<DraggingDivider>(&now_)) {
        divider->before.renameDisplay(displayID, newID);
    }
}

} // namespace kova
