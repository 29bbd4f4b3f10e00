// Panels between the desktop and the windows of all applications. A panel is the handle of a divider, or a guard: a
// panel that keeps presses in an area without windows from the desktop. Objective-C++ only; main thread.
#pragma once

#include "windowing/PointerServicing.h"

#import <AppKit/AppKit.h>

#include <functional>

namespace kova::macos {

/// Callbacks for pointer events of a handle. They read the pointer's location themselves.
struct DividerPanelEvents {
    std::function<void(int clickCount)> pressed;
    std::function<void()> moved;
    std::function<void()> released;
    std::function<void(bool isEntered)> hoverChanged; // the pointer has entered the handle, or left it
};

} // namespace kova::macos

/// An invisible view. It receives presses of the main button and does nothing. It passes presses of other buttons on to
/// the desktop.
@interface KOVAGuardView : NSView
@end

/// A divider's handle. Shows a thin line while the pointer is over it or drags it, and is invisible otherwise.
@interface KOVADividerView : KOVAGuardView
- (instancetype)initWithAxis:(kova::LayoutAxis)axis events:(kova::macos::DividerPanelEvents)events;
@end

/// Makes a panel that contains the view. The panel never gets the focus.
NSPanel* makeDesktopPanel(KOVAGuardView* view);
