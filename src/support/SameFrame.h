// Decides whether two frames count as equal.
#pragma once

#include "support/Geometry.h"

#include <cmath>

namespace kova {

/// Windows round their frames, and window managers add or take a point.
inline constexpr double kFrameTolerancePoints = 2;
/// Between two readings of one window, which differ by rounding alone.
inline constexpr double kRoundingPoints = 0.5;

/// Points of one coordinate space.
inline bool isSamePlace(CGPoint a, CGPoint b) {
    return std::abs(a.x - b.x) <= kFrameTolerancePoints && std::abs(a.y - b.y) <= kFrameTolerancePoints;
}

} // namespace kova
