// Panels between the windows of all applications and the desktop: a divider's handle, and the guard of a bare area.
// Objective-C++ only; main thread.
#pragma once

#include "windowing/PointerServicing.h"

#import <AppKit/AppKit.h>

#include <functional>

namespace kova::macos {

/// Pointer events of a handle; the pointer's location is read elsewhere.
struct DividerPanelEvents {
    std::function<void(int clickCount)> pressed;
    std::function<void()> moved;
    std::function<void()> released;
    std::function<void(bool isEntered)> crossed; // the pointer has entered the handle, or left it
};

} // namespace kova::macos

/// An invisible view. Swallows presses of the main button; presses of other buttons reach the desktop.
@interface KOVAGuardView : NSView
@end

/// A divider's handle. Shows a thin line while the pointer is over it or drags it; otherwise invisible.
@interface KOVADividerView : KOVAGuardView
- (instancetype)initWithAxis:(kova::LayoutAxis)axis events:(kova::macos::DividerPanelEvents)events;
@end

/// A panel that contains the view and never gets the focus.
NSPanel* makeDesktopPanel(KOVAGuardView* view);
