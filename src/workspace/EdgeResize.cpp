#include "workspace/EdgeResize.h"

#include "support/SameFrame.h"

#include <cmath>

namespace kova {

namespace {

constexpr double kTouchingPoints = 1;

/// The extent of a rectangle along an axis and across it.
struct Extent {
    double start;
    double end;
    double acrossStart;
    double acrossEnd;
};

Extent extentAlong(LayoutAxis axis, const CGRect& r) {
    if (axis == LayoutAxis::horizontal) return {minX(r), maxX(r), minY(r), maxY(r)};
    return {minY(r), maxY(r), minX(r), maxX(r)};
}

/// Whether the divider is at least as long as the side of the cell.
bool coversSide(const Extent& divider, const Extent& cell) {
    return divider.acrossStart <= cell.acrossStart + kTouchingPoints &&
           divider.acrossEnd >= cell.acrossEnd - kTouchingPoints;
}

} // namespace

std::vector<DividerMove> dividersMovedBy(const CGRect& cell, const CGRect& before, const CGRect& after,
                                         const std::vector<LayoutDivider>& dividers) {
    std::vector<DividerMove> moves;
    for (const auto& divider : dividers) {
        const Extent gap = extentAlong(divider.axis, divider.frame);
        const Extent tile = extentAlong(divider.axis, cell);
        if (!coversSide(gap, tile)) continue;
        const Extent old = extentAlong(divider.axis, before);
        const Extent now = extentAlong(divider.axis, after);
        const bool isAtEnd = std::abs(gap.start - tile.end) <= kTouchingPoints;
        const bool isAtStart = std::abs(gap.end - tile.start) <= kTouchingPoints;
        const double moved = isAtEnd ? now.end - old.end : isAtStart ? now.start - old.start : 0;
        if (std::abs(moved) > kFrameTolerancePoints) moves.push_back({divider, moved});
    }
    return moves;
}

} // namespace kova
