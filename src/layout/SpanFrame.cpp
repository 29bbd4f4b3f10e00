#include "layout/SpanFrame.h"

#include <algorithm>
#include <array>

namespace kova {

namespace {

constexpr double kOverlapTolerancePoints = 0.01; // square points

struct Extent {
    double low;
    double high;
};

CGRect rectOf(Extent across, Extent down) {
    return makeRect(across.low, down.low, across.high - across.low, down.high - down.low);
}

} // namespace

CGRect frameOfSpan(std::span<const CGRect> own, std::span<const CGRect> others) {
    Extent across{minX(own.front()), maxX(own.front())}, down{minY(own.front()), maxY(own.front())};
    Extent sharedAcross = across, sharedDown = down;
    for (const CGRect& tile : own) {
        across = {std::min(across.low, minX(tile)), std::max(across.high, maxX(tile))};
        down = {std::min(down.low, minY(tile)), std::max(down.high, maxY(tile))};
        sharedAcross = {std::max(sharedAcross.low, minX(tile)), std::min(sharedAcross.high, maxX(tile))};
        sharedDown = {std::max(sharedDown.low, minY(tile)), std::min(sharedDown.high, maxY(tile))};
    }
    const auto isClear = [&](const CGRect& rect) {
        return std::ranges::none_of(
            others, [&](const CGRect& other) { return intersectionArea(rect, other) > kOverlapTolerancePoints; });
    };
    const std::array<CGRect, 3> possible = {rectOf(across, down), rectOf(sharedAcross, down),
                                            rectOf(across, sharedDown)};
    for (const CGRect& frame : possible) {
        if (frame.size.width > 0 && frame.size.height > 0 && isClear(frame)) return frame;
    }
    return *std::ranges::max_element(own, {}, [](const CGRect& tile) { return tile.size.width * tile.size.height; });
}

} // namespace kova
