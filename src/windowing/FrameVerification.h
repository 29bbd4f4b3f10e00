// Decides what a verification pass does about a requested frame. These functions only compute: the caller reads the
// frame and writes the correction.
#pragma once

#include "support/Geometry.h"

#include <array>
#include <optional>

namespace kova {

/// Which of position and size is written first. The order matters: some applications limit the size depending on the
/// position, or the position depending on the size.
enum class FrameWriteOrder { positionFirst, sizeFirst };

/// When the passes run, in seconds after the request.
inline constexpr std::array kVerificationDelays = {0.06, 0.16, 0.34, 0.65};
inline constexpr int kLastVerificationPass = static_cast<int>(kVerificationDelays.size()) - 1;
/// Requests within this time (in seconds) are verified together.
inline constexpr double kVerificationBatch = 0.001;

enum class FrameVerdict {
    onTarget,
    offTarget,       // at another place, too small, or unknown
    refusesToShrink, // larger than the target
};

/// `frame` is absent when it could not be read.
FrameVerdict verdictOnFrame(const std::optional<CGRect>& frame, const CGRect& target);

/// The order of one write of a request. The first write is step 0, the correction of pass k is step k + 1. The two
/// orders alternate.
FrameWriteOrder writeOrder(int step);

/// The frame, moved inside the target without a change of its size. Absent if the frame is larger than the target, or
/// if it is inside the target already.
std::optional<CGRect> movedInside(const CGRect& frame, const CGRect& target);

} // namespace kova
