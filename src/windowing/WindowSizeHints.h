// Which sizes a window accepts, by its announced hints, and the frame to request so that it gets one of them.
#pragma once

#include "support/Geometry.h"

namespace kova {

/// In points. Sizes are those of the window's content; `around` is how much larger the frame is. A component that is 0
/// restricts nothing.
struct WindowSizeHints {
    CGSize around{};
    CGSize minimum{};
    CGSize maximum{};
    CGSize base{};          // sizes are this and whole increments
    CGSize increment{};     // of a terminal: one character
    CGSize aspectBase{};    // subtracted before the aspect is computed
    double leastAspect = 0; // width divided by height
    double mostAspect = 0;
    bool operator==(const WindowSizeHints&) const = default;
};

/// The largest frame within the tile that the hints allow, in the tile's coordinates (y grows downwards). The frame is
/// centered if it is limited by its largest size or its aspect; the rest of an increment is at the right and at the
/// bottom. In a direction in which not even the smallest size fits, the tile's extent.
CGRect largestFrameWithin(const CGRect& tile, const WindowSizeHints& hints);

} // namespace kova
