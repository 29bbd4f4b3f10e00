#include "workspace/NeighborTarget.h"

#include <cmath>

namespace kova {

namespace {

constexpr double kCrossAxisWeight = 2.25;
constexpr double kMinimumDistancePoints = 1; // along the direction

struct Offset {
    double along; // positive in the direction
    double across;
};

Offset offsetIn(WorkspaceDirection direction, double dx, double dy) {
    switch (direction) {
    case WorkspaceDirection::left:
        return {-dx, dy};
    case WorkspaceDirection::right:
        return {dx, dy};
    case WorkspaceDirection::up:
        return {dy, dx};
    case WorkspaceDirection::down:
        return {-dy, dx};
    }
    return {0, 0};
}

} // namespace

std::optional<TileTarget> neighborTarget(const CGRect& source, WorkspaceDirection direction,
                                         const std::map<TileTarget, CGRect>& frames) {
    const CGPoint from = center(source);
    std::optional<TileTarget> best;
    double bestScore = 0;
    for (const auto& [key, frame] : frames) { // in key order, so that the smaller key wins a tie
        const CGPoint to = center(frame);
        const Offset offset = offsetIn(direction, to.x - from.x, to.y - from.y);
        if (!(offset.along > kMinimumDistancePoints)) continue;
        const double score = offset.along + kCrossAxisWeight * std::abs(offset.across);
        if (!best || score < bestScore) {
            best = key;
            bestScore = score;
        }
    }
    return best;
}

} // namespace kova
