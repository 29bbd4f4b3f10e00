// Tells from the location of a press whether it can begin a drag of a window. On a Mac this saves a request to the
// application for each click inside a window.
#pragma once

#include "support/Geometry.h"

#include <span>

namespace kova {

/// Title bars with toolbars are this high.
inline constexpr double kTitleHeightPoints = 56;
/// Edges can be dragged from this far away, on both sides.
inline constexpr double kEdgeReachPoints = 10;

/// Whether the point is near the title or an edge of one of the frames. All in window-service space.
bool isNearTitleOrEdge(CGPoint point, std::span<const CGRect> frames);

} // namespace kova
