// Where the pointer takes hold of a window, so that on a Mac a click inside a window asks no application anything.
#pragma once

#include "support/Geometry.h"

#include <span>

namespace kova {

/// Title bars with toolbars are this high.
inline constexpr double kTitleHeightPoints = 56;
/// Edges can be taken hold of this far from the frame, on both sides.
inline constexpr double kEdgeReachPoints = 10;

/// Whether the point is near the title or an edge of one of the frames. All in window-service space.
bool isNearTitleOrEdge(CGPoint point, std::span<const CGRect> frames);

} // namespace kova
