// Tolerances within which two frames or positions count as equal.
#pragma once

#include "support/Geometry.h"

#include <cmath>

namespace kova {

/// The tolerance between a requested frame and the frame that a window took: windows round their frames, and window
/// managers add or subtract a point.
inline constexpr double kFrameTolerancePoints = 2;
/// The tolerance between two readings of one window's frame, which differ only by rounding.
inline constexpr double kRoundingPoints = 0.5;

/// Both points are in the same coordinate space.
inline bool isSamePlace(CGPoint a, CGPoint b) {
    return std::abs(a.x - b.x) <= kFrameTolerancePoints && std::abs(a.y - b.y) <= kFrameTolerancePoints;
}

} // namespace kova
