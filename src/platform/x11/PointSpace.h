// Converts between the pixels of the X server and the points of the platform interfaces; no other code does that. X11
// has one pixel space, so all displays have the same scale. Converting pixels to points and back gives the same pixels.
// Converting points to pixels and back moves an edge by half a pixel at most, since edges are rounded to whole pixels.
#pragma once

#include "platform/x11/XGeometry.h"
#include "windowing/WindowSizeHints.h"

namespace kova::x11 {

class PointSpace {
  public:
    PointSpace() = default;
    /// `scale`: pixels per point, at least 1. `firstDisplay` is in root coordinates; its bottom left corner is the
    /// origin of screen space, and its top left corner is the origin of window-service space.
    PointSpace(double scale, const PixelRect& firstDisplay) : scale_(scale), firstDisplay_(firstDisplay) {}

    double scale() const { return scale_; }
    const PixelRect& firstDisplay() const { return firstDisplay_; }

    double points(int pixels) const { return pixels / scale_; }
    CGSize points(int width, int height) const { return {points(width), points(height)}; }
    WindowSizeHints points(const WindowSizeHints& inPixels) const;
    int pixels(double points) const;

    /// Convert root coordinates to window-service space, and back.
    CGRect points(const PixelRect& onRoot) const;
    PixelRect pixels(const CGRect& frameForWindowService) const;

    /// Convert root coordinates to screen space, and back.
    CGPoint pointOnScreen(int x, int y) const;
    CGRect pointsOnScreen(const PixelRect& onRoot) const;
    PixelRect pixelsFromScreen(const CGRect& frameOnScreen) const;

    bool operator==(const PointSpace&) const = default;

  private:
    double scale_ = 1;
    PixelRect firstDisplay_;
};

} // namespace kova::x11
