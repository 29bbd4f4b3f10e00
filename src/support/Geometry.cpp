#include "support/Geometry.h"

#include <algorithm>
#include <cmath>

namespace kova {

CGRect unionOf(const CGRect& a, const CGRect& b) {
    const double left = std::min(minX(a), minX(b));
    const double top = std::min(minY(a), minY(b));
    return makeRect(left, top, std::max(maxX(a), maxX(b)) - left, std::max(maxY(a), maxY(b)) - top);
}

double intersectionArea(const CGRect& a, const CGRect& b) {
    const double width = std::min(maxX(a), maxX(b)) - std::max(minX(a), minX(b));
    const double height = std::min(maxY(a), maxY(b)) - std::max(minY(a), minY(b));
    return width > 0 && height > 0 ? width * height : 0;
}

bool containsWithin(const CGRect& outer, const CGRect& inner, double tolerancePoints) {
    return minX(inner) >= minX(outer) - tolerancePoints && minY(inner) >= minY(outer) - tolerancePoints &&
           maxX(inner) <= maxX(outer) + tolerancePoints && maxY(inner) <= maxY(outer) + tolerancePoints;
}

bool containsPoint(const CGRect& r, CGPoint point) {
    return point.x >= minX(r) && point.x < maxX(r) && point.y >= minY(r) && point.y < maxY(r);
}

CGRect insetBy(const CGRect& r, double points) {
    const double dx = std::min(points, r.size.width / 2);
    const double dy = std::min(points, r.size.height / 2);
    return makeRect(minX(r) + dx, minY(r) + dy, r.size.width - 2 * dx, r.size.height - 2 * dy);
}

bool nearlyEqual(const CGRect& a, const CGRect& b, double tolerancePoints) {
    return std::abs(minX(a) - minX(b)) <= tolerancePoints && std::abs(minY(a) - minY(b)) <= tolerancePoints &&
           std::abs(a.size.width - b.size.width) <= tolerancePoints &&
           std::abs(a.size.height - b.size.height) <= tolerancePoints;
}

bool isFinite(const CGSize& s) {
    return std::isfinite(s.width) && std::isfinite(s.height);
}

bool isFinite(const CGRect& r) {
    return std::isfinite(r.origin.x) && std::isfinite(r.origin.y) && isFinite(r.size);
}

CGRect flipped(const CGRect& rect, double firstScreenMaxY) {
    return makeRect(minX(rect), firstScreenMaxY - maxY(rect), rect.size.width, rect.size.height);
}

CGPoint flipped(CGPoint point, double firstScreenMaxY) {
    return {point.x, firstScreenMaxY - point.y};
}

CGRect tileFrameOnScreen(const CGRect& frameInLayout, const CGRect& visibleFrameOnScreen) {
    return makeRect(minX(visibleFrameOnScreen) + minX(frameInLayout), maxY(visibleFrameOnScreen) - maxY(frameInLayout),
                    frameInLayout.size.width, frameInLayout.size.height);
}

} // namespace kova
