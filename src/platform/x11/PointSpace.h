// Converts between the pixels of the X server and the points of the platform interfaces; the only place that does. X11
// has one pixel space, so there is one scale for all displays. Converting pixels to points and back gives the same
// pixels. Edges between two pixels are rounded, so converting points to pixels and back moves an edge by half a pixel
// at most.
#pragma once

#include "platform/x11/XGeometry.h"
#include "windowing/WindowSizeHints.h"

namespace kova::x11 {

class PointSpace {
  public:
    PointSpace() = default;
    /// `scale`: pixels to a point, at least 1. `firstDisplay`: root coordinates; screen space begins at its bottom left
    /// corner, window-service space at its top left one.
    PointSpace(double scale, const PixelRect& firstDisplay) : scale_(scale), firstDisplay_(firstDisplay) {}

    double scale() const { return scale_; }
    const PixelRect& firstDisplay() const { return firstDisplay_; }

    double points(int pixels) const { return pixels / scale_; }
    CGSize points(int width, int height) const { return {points(width), points(height)}; }
    WindowSizeHints points(const WindowSizeHints& inPixels) const;
    int pixels(double points) const;

    /// Window-service space from root coordinates, and back.
    CGRect points(const PixelRect& onRoot) const;
    PixelRect pixels(const CGRect& frameForWindowService) const;

    /// Screen space from root coordinates, and back.
    CGPoint pointOnScreen(int x, int y) const;
    CGRect pointsOnScreen(const PixelRect& onRoot) const;
    PixelRect pixelsFromScreen(const CGRect& frameOnScreen) const;

    bool operator==(const PointSpace&) const = default;

  private:
    double scale_ = 1;
    PixelRect firstDisplay_;
};

} // namespace kova::x11
