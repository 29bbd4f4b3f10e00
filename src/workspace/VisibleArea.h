// Finds the display that shows a rectangle, and moves rectangles into visible areas.
#pragma once

#include "windowing/ScreenServicing.h"

#include <vector>

namespace kova {

/// The display that shows the largest part of the rectangle (screen space); null if no display shows any of it.
const Screen* screenShowing(const std::vector<Screen>& screens, const CGRect& rectOnScreen);
/// The display that shows the largest part of the rectangle (screen space). If no display shows any of it, the display
/// whose edge is nearest to the middle of the rectangle. Null without displays.
const Screen* screenNearest(const std::vector<Screen>& screens, const CGRect& rectOnScreen);
/// Whether a display shows the middle of the rectangle (screen space).
bool isMiddleShown(const std::vector<Screen>& screens, const CGRect& rectOnScreen);
/// Moves the rectangle into the area without resizing it. A rectangle that is larger than the area gets the area's
/// smallest x and y. In window-service space this is the top left corner, so a window's title bar stays visible.
CGRect movedIntoArea(const CGRect& rect, const CGRect& area);

} // namespace kova
