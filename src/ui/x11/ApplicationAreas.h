// The parts of the screen that windows of applications cover, in pixels. Some compositing window managers draw
// unmanaged windows above all others, whatever the stacking order is. Under these window managers the applications are
// cut out of the overlay's shape. Plain values, independent of the X server.
#pragma once

#include "ui/x11/StackOrder.h"

#include <QMargins>
#include <QRect>
#include <QRegion>

#include <map>

namespace kova::ui {

class ApplicationAreas {
  public:
    /// `frame` is the frame of the root window's child, `drawn` the part without invisible borders and shadow.
    void shown(WindowNumber window, const QRect& frame, const QRect& drawn);
    /// Returns false if the size has changed. Then the borders may have changed too, and must be read again.
    bool moved(WindowNumber window, const QRect& frame);
    void removed(WindowNumber window) { areas_.erase(window); }
    void clear() { areas_.clear(); }
    bool knows(WindowNumber window) const { return areas_.contains(window); }

    /// The area that the applications in `order` cover, except those that a guard window hides.
    QRegion covered(const StackOrder& order) const;

  private:
    struct Area {
        QRect frame;
        QMargins invisible;
    };
    std::map<WindowNumber, Area> areas_;
};

} // namespace kova::ui
