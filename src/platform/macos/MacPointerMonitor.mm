#include "platform/macos/MacPointerMonitor.h"

#include "platform/macos/EventMonitors.h"

namespace kova::macos {

namespace {

constexpr NSEventMask kMainButton = NSEventMaskLeftMouseDown | NSEventMaskLeftMouseDragged | NSEventMaskLeftMouseUp;

PointerEvent::Kind kind(NSEvent* event) {
    switch (event.type) {
    case NSEventTypeLeftMouseDown:
        return PointerEvent::Kind::pressed;
    case NSEventTypeLeftMouseUp:
        return PointerEvent::Kind::released;
    default:
        return PointerEvent::Kind::moved;
    }
}

PointerEvent pointerEvent(NSEvent* event) {
    // An event of another application has no window here, so that its place is one on the screen.
    return {kind(event), event.locationInWindow, (event.modifierFlags & NSEventModifierFlagShift) != 0};
}

} // namespace

Subscription MacPointerMonitor::observePointer(std::function<void(const PointerEvent&)> observer) {
    return tellEventsOfOthers<PointerEvent>(queue_, kMainButton, pointerEvent, std::move(observer));
}

} // namespace kova::macos
