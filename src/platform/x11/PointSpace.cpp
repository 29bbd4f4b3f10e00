#include "platform/x11/PointSpace.h"

#include <initializer_list>

namespace kova::x11 {

int PointSpace::pixels(double points) const {
    return static_cast<int>(std::lround(points * scale_));
}

WindowSizeHints PointSpace::points(const WindowSizeHints& inPixels) const {
    const auto scaled = [&](const CGSize& size) { return CGSize{size.width / scale_, size.height / scale_}; };
    WindowSizeHints hints = inPixels; // an aspect ratio is the same in points
    for (CGSize WindowSizeHints::*size :
         {&WindowSizeHints::around, &WindowSizeHints::minimum, &WindowSizeHints::maximum, &WindowSizeHints::base,
          &WindowSizeHints::increment, &WindowSizeHints::aspectBase}) {
        hints.*size = scaled(inPixels.*size);
    }
    return hints;
}

CGRect PointSpace::points(const PixelRect& onRoot) const {
    return makeRect(points(onRoot.x - firstDisplay_.x), points(onRoot.y - firstDisplay_.y), points(onRoot.width),
                    points(onRoot.height));
}

PixelRect PointSpace::pixels(const CGRect& frame) const {
    // Edges exactly between two pixels are rounded upwards even if arithmetic puts them slightly below. Otherwise a
    // window's width would depend on its position, and a terminal could lose a column when it is moved.
    const double slack = scale_ == 1 ? 0 : 1e-6;
    return roundedToPixels(makeRect(minX(frame) * scale_ + firstDisplay_.x + slack,
                                    minY(frame) * scale_ + firstDisplay_.y + slack, frame.size.width * scale_,
                                    frame.size.height * scale_));
}

CGPoint PointSpace::pointOnScreen(int x, int y) const {
    return flipped(CGPoint{points(x - firstDisplay_.x), points(y - firstDisplay_.y)}, points(firstDisplay_.height));
}

CGRect PointSpace::pointsOnScreen(const PixelRect& onRoot) const {
    return flipped(points(onRoot), points(firstDisplay_.height));
}

PixelRect PointSpace::pixelsFromScreen(const CGRect& frameOnScreen) const {
    return pixels(flipped(frameOnScreen, points(firstDisplay_.height)));
}

} // namespace kova::x11
