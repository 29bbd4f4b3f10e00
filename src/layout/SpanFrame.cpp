#include "layout/SpanFrame.h"

#include <algorithm>
#include <array>

namespace kova {

namespace {

constexpr double kOverlapToleranceSquarePoints = 0.01;

struct Extent {
    double low;
    double high;
};

CGRect rectOf(Extent across, Extent down) {
    return makeRect(across.low, down.low, across.high - across.low, down.high - down.low);
}

} // namespace

CGRect frameOfSpan(std::span<const CGRect> spanTiles, std::span<const CGRect> otherTiles) {
    const CGRect& first = spanTiles.front();
    Extent across{minX(first), maxX(first)}, down{minY(first), maxY(first)};
    Extent commonX = across, commonY = down;
    for (const CGRect& tile : spanTiles) {
        across = {std::min(across.low, minX(tile)), std::max(across.high, maxX(tile))};
        down = {std::min(down.low, minY(tile)), std::max(down.high, maxY(tile))};
        commonX = {std::max(commonX.low, minX(tile)), std::min(commonX.high, maxX(tile))};
        commonY = {std::max(commonY.low, minY(tile)), std::min(commonY.high, maxY(tile))};
    }
    const auto isClear = [&](const CGRect& rect) {
        return std::ranges::none_of(otherTiles, [&](const CGRect& other) {
            return intersectionArea(rect, other) > kOverlapToleranceSquarePoints;
        });
    };
    const std::array<CGRect, 3> possible = {rectOf(across, down), rectOf(commonX, down), rectOf(across, commonY)};
    for (const CGRect& frame : possible) {
        if (frame.size.width > 0 && frame.size.height > 0 && isClear(frame)) return frame;
    }
    return *std::ranges::max_element(spanTiles, {},
                                     [](const CGRect& tile) { return tile.size.width * tile.size.height; });
}

} // namespace kova
