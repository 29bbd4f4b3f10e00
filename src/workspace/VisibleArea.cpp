#include "workspace/VisibleArea.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace kova {

namespace {

double distanceTo(const CGRect& rect, CGPoint point) {
    const double dx = std::max({minX(rect) - point.x, point.x - maxX(rect), 0.0});
    const double dy = std::max({minY(rect) - point.y, point.y - maxY(rect), 0.0});
    return std::hypot(dx, dy);
}

double movedInto(double position, double length, double low, double high) {
    return std::max(low, std::min(position, high - length));
}

} // namespace

const Screen* screenShowing(const std::vector<Screen>& screens, const CGRect& rectOnScreen) {
    const Screen* best = nullptr;
    double bestArea = 0;
    for (const Screen& screen : screens) {
        const double area = intersectionArea(screen.frame, rectOnScreen);
        if (area <= bestArea) continue;
        bestArea = area;
        best = &screen;
    }
    return best;
}

const Screen* screenNearest(const std::vector<Screen>& screens, const CGRect& rectOnScreen) {
    if (const Screen* showing = screenShowing(screens, rectOnScreen)) return showing;
    const auto nearest = std::ranges::min_element(
        screens, {}, [&](const Screen& screen) { return distanceTo(screen.frame, center(rectOnScreen)); });
    return nearest == screens.end() ? nullptr : &*nearest;
}

bool isMiddleShown(const std::vector<Screen>& screens, const CGRect& rectOnScreen) {
    return std::ranges::any_of(screens,
                               [&](const Screen& screen) { return containsPoint(screen.frame, center(rectOnScreen)); });
}

CGRect movedIntoArea(const CGRect& rect, const CGRect& area) {
    return {{movedInto(minX(rect), rect.size.width, minX(area), maxX(area)),
             movedInto(minY(rect), rect.size.height, minY(area), maxY(area))},
            rect.size};
}

} // namespace kova
