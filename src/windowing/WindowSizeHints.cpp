#include "windowing/WindowSizeHints.h"

#include <algorithm>
#include <cmath>

namespace kova {

namespace {

/// A frame along one axis.
struct Extent {
    double origin;
    double length;
};

double wholeIncrements(double length, double base, double increment) {
    if (increment <= 1 || length <= base) return length;
    // With a fractional scale, points are not exact. A length of whole increments must not lose one by rounding down.
    constexpr double kSlackIncrements = 1e-6;
    return base + std::floor((length - base) / increment + kSlackIncrements) * increment;
}

Extent within(Extent tile, double content, double around, double least, bool isCentered) {
    const double length = std::max(content, least) + around;
    if (length >= tile.length) return tile;
    return {isCentered ? tile.origin + std::floor((tile.length - length) / 2) : tile.origin, length};
}

} // namespace

CGRect largestFrameWithin(const CGRect& tile, const WindowSizeHints& hints) {
    const double roomAcross = tile.size.width - hints.around.width;
    const double roomDown = tile.size.height - hints.around.height;
    if (roomAcross <= 0 || roomDown <= 0) return tile;
    double width = hints.maximum.width > 0 ? std::min(roomAcross, hints.maximum.width) : roomAcross;
    double height = hints.maximum.height > 0 ? std::min(roomDown, hints.maximum.height) : roomDown;
    const CGSize base = hints.aspectBase;
    if (hints.mostAspect > 0 && width - base.width > (height - base.height) * hints.mostAspect) {
        width = base.width + std::floor((height - base.height) * hints.mostAspect);
    }
    if (hints.leastAspect > 0 && width - base.width < (height - base.height) * hints.leastAspect) {
        height = base.height + std::floor((width - base.width) / hints.leastAspect);
    }
    const bool isNarrower = width < roomAcross, isFlatter = height < roomDown;
    width = wholeIncrements(width, hints.base.width, hints.increment.width);
    height = wholeIncrements(height, hints.base.height, hints.increment.height);
    const Extent across =
        within({minX(tile), tile.size.width}, width, hints.around.width, hints.minimum.width, isNarrower);
    const Extent down =
        within({minY(tile), tile.size.height}, height, hints.around.height, hints.minimum.height, isFlatter);
    return makeRect(across.origin, down.origin, across.length, down.length);
}

} // namespace kova
