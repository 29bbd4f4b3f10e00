#include "windowing/WindowDragRegion.h"

#include <algorithm>

namespace kova {

bool isNearTitleOrEdge(CGPoint point, std::span<const CGRect> frames) {
    return std::ranges::any_of(frames, [point](const CGRect& frame) {
        if (!containsPoint(insetBy(frame, -kEdgeReachPoints), point)) return false;
        const bool isInTitle = point.y < minY(frame) + kTitleHeightPoints;
        return isInTitle || !containsPoint(insetBy(frame, kEdgeReachPoints), point);
    });
}

} // namespace kova
