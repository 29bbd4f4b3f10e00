// Which sizes a window takes, as its application has told the window manager, and the frame to ask for so that it gets
// one of them.
#pragma once

#include "support/Geometry.h"

namespace kova {

/// In points. Sizes are those of the window's content; `around` is what its frame has beyond that. A component that is
/// 0 restricts nothing.
struct WindowSizeHints {
    CGSize around{};
    CGSize minimum{};
    CGSize maximum{};
    CGSize base{};          // sizes are this and whole increments
    CGSize increment{};     // of a terminal: one character
    CGSize aspectBase{};    // does not count for the aspect
    double leastAspect = 0; // width divided by height
    double mostAspect = 0;
    bool operator==(const WindowSizeHints&) const = default;
};

/// The largest frame within the tile that the hints allow, in the coordinates of the tile (y grows downwards). What its
/// largest size or its aspect leaves free is on both sides; what is left of an increment is at the right and at the
/// bottom. In a direction in which not even the smallest size fits, the tile's own extent.
CGRect largestFrameWithin(const CGRect& tile, const WindowSizeHints& hints);

} // namespace kova
