// One divider's handle on the screen. Objective-C++ only; main thread.
#pragma once

#include "windowing/PointerServicing.h"

#import <AppKit/AppKit.h>

#include <functional>

namespace kova::macos {

/// What the hand does with a handle; where is asked elsewhere.
struct DividerPanelEvents {
    std::function<void(int clickCount)> pressed;
    std::function<void()> moved;
    std::function<void()> released;
    std::function<void()> entered;
    std::function<void()> left;
};

} // namespace kova::macos

@interface KOVADividerView : NSView
- (instancetype)initWithAxis:(kova::LayoutAxis)axis events:(kova::macos::DividerPanelEvents)events;
@end

/// A panel that never gets the keyboard, around the view.
NSPanel* makeDividerPanel(KOVADividerView* view);
