#include "windowing/FrameVerification.h"

#include "support/SameFrame.h"

#include <algorithm>

namespace kova {

FrameVerdict verdictOnFrame(const std::optional<CGRect>& frame, const CGRect& target) {
    if (!frame) return FrameVerdict::offTarget;
    if (frame->size.width - target.size.width > kFrameTolerancePoints ||
        frame->size.height - target.size.height > kFrameTolerancePoints) {
        return FrameVerdict::refusesToShrink;
    }
    const bool isOnTarget =
        nearlyEqual(*frame, target, kFrameTolerancePoints) && containsWithin(target, *frame, kFrameTolerancePoints);
    return isOnTarget ? FrameVerdict::onTarget : FrameVerdict::offTarget;
}

FrameWriteOrder writeOrder(int step) {
    return step % 2 == 0 ? FrameWriteOrder::positionFirst : FrameWriteOrder::sizeFirst;
}

std::optional<CGRect> movedInside(const CGRect& frame, const CGRect& target) {
    if (frame.size.width > target.size.width || frame.size.height > target.size.height) return std::nullopt;
    const CGRect moved = {{std::min(std::max(minX(frame), minX(target)), maxX(target) - frame.size.width),
                           std::min(std::max(minY(frame), minY(target)), maxY(target) - frame.size.height)},
                          frame.size};
    if (moved == frame) return std::nullopt;
    return moved;
}

} // namespace kova
