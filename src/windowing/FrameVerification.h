// Decides what a verification pass does about a requested frame. Functions over values: the caller reads the frame and
// writes the correction.
#pragma once

#include "support/Geometry.h"

#include <array>
#include <optional>

namespace kova {

/// Some applications clamp the size against the position, or the position against the size; so the order matters.
enum class FrameWriteOrder { positionFirst, sizeFirst };

/// When the passes run, in seconds after the request.
inline constexpr std::array kVerificationDelays = {0.06, 0.16, 0.34, 0.65};
inline constexpr int kLastVerificationPass = static_cast<int>(kVerificationDelays.size()) - 1;
/// Requests within this time are verified together, in seconds.
inline constexpr double kVerificationBatch = 0.001;

enum class FrameVerdict {
    onTarget,
    off,             // at another place, too small, or unknown
    refusesToShrink, // larger than the target
};

/// `frame` is absent when it could not be read.
FrameVerdict verdictOnFrame(const std::optional<CGRect>& frame, const CGRect& target);

/// The first write of a request has step 0, the correction of pass k step k + 1; the order alternates.
FrameWriteOrder writeOrder(int step);

/// The frame moved inside the target with its size kept; absent when it is larger than the target or need not move.
std::optional<CGRect> movedInside(const CGRect& frame, const CGRect& target);

} // namespace kova
