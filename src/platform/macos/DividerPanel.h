// One divider's handle on the screen. Objective-C++ only; main thread.
#pragma once

#include "windowing/PointerServicing.h"

#import <AppKit/AppKit.h>

#include <functional>

namespace kova::macos {

/// What the pointer does with a handle; its place is asked elsewhere.
struct DividerPanelEvents {
    std::function<void(int clickCount)> pressed;
    std::function<void()> moved;
    std::function<void()> released;
    std::function<void(bool isEntered)> crossed; // the pointer has entered the handle, or left it
};

} // namespace kova::macos

/// Shows a thin line while the pointer is over it or drags it; else nothing.
@interface KOVADividerView : NSView
- (instancetype)initWithAxis:(kova::LayoutAxis)axis events:(kova::macos::DividerPanelEvents)events;
@end

/// A panel that never gets the keyboard, around the view.
NSPanel* makeDividerPanel(KOVADividerView* view);
