// Points, sizes and rectangles in double-precision points, under the names that the Mac's own headers give them.
// A rectangle does not know its coordinate space: the name of the variable that holds it says which one
// (layout space, screen space or window-service space; see docs/architecture.md).
#pragma once

#if defined(__APPLE__)
#include <CoreGraphics/CGGeometry.h>
#else
struct CGPoint {
    double x;
    double y;
};
struct CGSize {
    double width;
    double height;
};
struct CGRect {
    CGPoint origin;
    CGSize size;
};
#endif

inline bool operator==(const CGPoint& a, const CGPoint& b) {
    return a.x == b.x && a.y == b.y;
}
inline bool operator==(const CGSize& a, const CGSize& b) {
    return a.width == b.width && a.height == b.height;
}
inline bool operator==(const CGRect& a, const CGRect& b) {
    return a.origin == b.origin && a.size == b.size;
}

namespace kova {

/// A rectangle from its parts; declare variables as `CGRect r{}`, since the Mac's own record has no defaults.
constexpr CGRect makeRect(double x, double y, double width, double height) {
    return {{x, y}, {width, height}};
}

constexpr double minX(const CGRect& r) {
    return r.origin.x;
}
constexpr double minY(const CGRect& r) {
    return r.origin.y;
}
constexpr double maxX(const CGRect& r) {
    return r.origin.x + r.size.width;
}
constexpr double maxY(const CGRect& r) {
    return r.origin.y + r.size.height;
}
constexpr CGPoint center(const CGRect& r) {
    return {r.origin.x + r.size.width / 2, r.origin.y + r.size.height / 2};
}

/// The smallest rectangle that covers both.
CGRect unionOf(const CGRect& a, const CGRect& b);
/// Area shared by both; 0 when they only touch or lie apart.
double intersectionArea(const CGRect& a, const CGRect& b);
/// True when `inner` lies in `outer` grown by `tolerancePoints` on every side.
bool containsWithin(const CGRect& outer, const CGRect& inner, double tolerancePoints);
/// True when the point lies in the rectangle; the minimum edges belong to it, the maximum edges do not.
bool containsPoint(const CGRect& r, CGPoint point);
/// The rectangle shrunk by `points` on every side. A side that is too short for that becomes 0, at the center.
CGRect insetBy(const CGRect& r, double points);
/// True when x, y, width and height each differ by at most `tolerancePoints`.
bool nearlyEqual(const CGRect& a, const CGRect& b, double tolerancePoints);
bool isFinite(const CGRect& r);
bool isFinite(const CGSize& s);

/// Screen space (origin bottom left, y up) to window-service space (origin top left of the first screen, y down), and,
/// since the mapping is its own inverse, back again.
CGRect flipped(const CGRect& rect, double firstScreenMaxY);
CGPoint flipped(CGPoint point, double firstScreenMaxY);

/// A tile's frame in layout space (origin at the area's top left, y down) as a rectangle in screen space.
CGRect tileFrameOnScreen(const CGRect& frameInLayout, const CGRect& visibleFrameOnScreen);

} // namespace kova
