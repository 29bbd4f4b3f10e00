// When two frames count as the same: windows round theirs, and window managers add or take a point.
#pragma once

#include "support/Geometry.h"

#include <cmath>

namespace kova {

inline constexpr double kFrameTolerancePoints = 2;

/// Points of one coordinate space.
inline bool isSamePlace(CGPoint a, CGPoint b) {
    return std::abs(a.x - b.x) <= kFrameTolerancePoints && std::abs(a.y - b.y) <= kFrameTolerancePoints;
}

} // namespace kova
