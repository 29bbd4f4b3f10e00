// Finds the display that shows a rectangle, and moves rectangles into visible areas.
#pragma once

#include "windowing/ScreenServicing.h"

#include <vector>

namespace kova {

/// The display that shows most of the rectangle (screen space); null when none shows any of it.
const Screen* screenShowing(const std::vector<Screen>& screens, const CGRect& rectOnScreen);
/// The nearest display: the one that shows most of the rectangle, else the one whose edge is nearest to its middle.
/// Null without displays.
const Screen* screenNearest(const std::vector<Screen>& screens, const CGRect& rectOnScreen);
/// Whether a display shows the middle of the rectangle (screen space).
bool isMiddleShown(const std::vector<Screen>& screens, const CGRect& rectOnScreen);
/// The rectangle moved into the area with its size kept; one that is larger begins at the area's smallest x and y.
/// Both in one space; in window-service space that is the top left corner, where a window's title bar is.
CGRect movedIntoArea(const CGRect& rect, const CGRect& area);

} // namespace kova
