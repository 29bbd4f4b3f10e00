// The frame of a window in one or more tiles. When a span is claimed, its tiles form a rectangle. But dividers and
// minimum sizes change tiles later, and then other tiles may overlap this rectangle.
#pragma once

#include "support/Geometry.h"

#include <span>

namespace kova {

/// The bounding rectangle of the span's tiles, of which there is at least one. If another tile overlaps it, it is
/// narrowed to the columns that all tiles of the span share, or else to the rows. If that does not help, the result is
/// the largest tile of the span. All rectangles are in one coordinate space.
CGRect frameOfSpan(std::span<const CGRect> spanTiles, std::span<const CGRect> otherTiles);

} // namespace kova
