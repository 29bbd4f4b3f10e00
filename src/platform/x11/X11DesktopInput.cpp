// Pointer, dividers and keys, implemented by `UserInput`.
#include "platform/x11/X11Parts.h"

namespace kova {

Subscription X11Desktop::observePointer(std::function<void(const PointerEvent&)> observer) {
    return parts_->input.observePointer(std::move(observer));
}

void X11Desktop::showHandles(const std::vector<DividerHandle>& handles) {
    parts_->input.showHandles(handles);
}

Subscription X11Desktop::observeHandles(std::function<void(const DividerHandleEvent&)> observer) {
    return parts_->input.observeHandles(std::move(observer));
}

Subscription X11Desktop::addGlobalMonitor(std::function<void(const KeyPress&)> monitor) {
    return parts_->input.addGlobalMonitor(std::move(monitor));
}

/// No window of KOVA has the focus, so there are no local key presses.
Subscription X11Desktop::addLocalMonitor(std::function<bool(const KeyPress&)>) {
    return {};
}

void X11Desktop::claim(const std::vector<KeyCombination>& combinations) {
    parts_->input.claim(combinations);
}

std::vector<KeyCombination> X11Desktop::heldByOthers() const {
    return parts_->input.heldByOthers();
}

Subscription X11Desktop::observeHeldByOthers(std::function<void()> known) {
    return parts_->input.observeHeldByOthers(std::move(known));
}

Subscription X11Desktop::recordKeys(std::function<bool(const KeyPress&)> recorder,
                                    std::function<void(const std::string&)> failed) {
    return parts_->input.recordKeys(std::move(recorder), std::move(failed));
}

std::string X11Desktop::charactersOf(std::uint16_t keyCode) const {
    return parts_->input.charactersOf(keyCode);
}

} // namespace kova
