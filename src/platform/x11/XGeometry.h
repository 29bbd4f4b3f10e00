// Whole pixels of the X server. All rectangles here are in root coordinates: origin at the top left of the root window,
// y growing downwards.
#pragma once

#include "support/Geometry.h"

#include <cmath>

namespace kova::x11 {

struct PixelRect {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;

    int right() const { return x + width; }
    int bottom() const { return y + height; }
    bool operator==(const PixelRect&) const = default;
};

/// Pixels by which the four sides of a rectangle move outwards; negative for inwards.
struct PixelEdges {
    int left = 0;
    int right = 0;
    int top = 0;
    int bottom = 0;

    int horizontal() const { return left + right; }
    int vertical() const { return top + bottom; }
    PixelEdges operator-(const PixelEdges& other) const {
        return {left - other.left, right - other.right, top - other.top, bottom - other.bottom};
    }
    bool operator==(const PixelEdges&) const = default;
};

inline PixelRect grown(const PixelRect& r, const PixelEdges& by) {
    return {r.x - by.left, r.y - by.top, r.width + by.horizontal(), r.height + by.vertical()};
}

inline PixelRect shrunk(const PixelRect& r, const PixelEdges& by) {
    return {r.x + by.left, r.y + by.top, r.width - by.horizontal(), r.height - by.vertical()};
}

inline bool intersects(const PixelRect& a, const PixelRect& b) {
    return a.x < b.right() && b.x < a.right() && a.y < b.bottom() && b.y < a.bottom();
}

inline bool contains(const PixelRect& r, int x, int y) {
    return x >= r.x && x < r.right() && y >= r.y && y < r.bottom();
}

/// The protocol's largest coordinate; a larger one would wrap around.
inline constexpr int kLargestCoordinate = 32767;

/// Rounds edges, not sizes, so that neighbors that share an edge still share it afterwards.
inline PixelRect roundedToPixels(const CGRect& r) {
    const auto pixel = [](double value) {
        if (!(value > -kLargestCoordinate)) return -kLargestCoordinate;
        return value < kLargestCoordinate ? static_cast<int>(std::lround(value)) : kLargestCoordinate;
    };
    const int left = pixel(minX(r));
    const int top = pixel(minY(r));
    return {left, top, pixel(maxX(r)) - left, pixel(maxY(r)) - top};
}

} // namespace kova::x11
