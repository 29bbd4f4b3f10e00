// The sizes that a window accepts, according to the hints that it announces, and the frame to request for such a size.
#pragma once

#include "support/Geometry.h"

namespace kova {

/// In points. Sizes are those of the window's content; the frame is larger by `around`. A component that is 0 restricts
/// nothing.
struct WindowSizeHints {
    CGSize around{}; // what the decorations add to the content
    CGSize minimum{};
    CGSize maximum{};
    CGSize base{};          // an accepted size is `base` plus whole increments
    CGSize increment{};     // of a terminal: one character
    CGSize aspectBase{};    // subtracted before the aspect is computed
    double leastAspect = 0; // width divided by height
    double mostAspect = 0;
    bool operator==(const WindowSizeHints&) const = default;
};

/// The largest frame within the tile that the hints allow, in the tile's coordinates (y grows downwards). A frame that
/// is limited by its maximum size or its aspect is centered. A gap of less than one increment remains at the right and
/// at the bottom. In a direction in which the minimum size does not fit, the frame has the tile's extent.
CGRect largestFrameWithin(const CGRect& tile, const WindowSizeHints& hints);

} // namespace kova
