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
    // The location of an event is relative to its window. Events for other applications have no window in this process,
    // and their location is in screen space.
    NSWindow* window = event.window;
    const CGPoint place = event.locationInWindow;
    return {.kind = kind(event),
            .location = window ? [window convertPointToScreen:place] : place,
            .isShiftDown = (event.modifierFlags & NSEventModifierFlagShift) != 0};
}

} // namespace

Subscription MacPointerMonitor::observePointer(std::function<void(const PointerEvent&)> observer) {
    return monitorEvents<PointerEvent>(queue_, EventSource::everywhere, kMainButton, pointerEvent,
                                       lifetime_.guard(std::move(observer)));
}

} // namespace kova::macos
