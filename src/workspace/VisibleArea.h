// Finds the display that shows a rectangle, and moves rectangles into visible areas.
#pragma once

#include "windowing/ScreenServicing.h"

#include <vector>

namespace kova {

/// The display that shows most of the rectangle (screen space); null when none shows any of it.
const Screen* screenShowing(const std::vector<Screen>& screens, const CGRect& rectOnScreen);
/// The display that shows most of the rectangle, else the display whose edge is nearest to the middle of the rectangle
/// (screen space). Null without displays.
const Screen* screenNearest(const std::vector<Screen>& screens, const CGRect& rectOnScreen);
/// Whether a display shows the middle of the rectangle (screen space).
bool isMiddleShown(const std::vector<Screen>& screens, const CGRect& rectOnScreen);
/// Moves the rectangle into the area without resizing it. A rectangle that is larger than the area begins at the area's
/// smallest x and y: in window-service space the top left corner, where a window's title bar is.
CGRect movedIntoArea(const CGRect& rect, const CGRect& area);

} // namespace kova
