// The parts of the screen that windows of applications cover. Some window managers that composite draw unmanaged
// windows above all others, whatever their order; there the overlay is cut out where applications are. Pixels. Plain
// values, without a server.
#pragma once

#include "ui/x11/StackOrder.h"

#include <QMargins>
#include <QRect>
#include <QRegion>

#include <map>

namespace kova::ui {

class ApplicationAreas {
  public:
    /// `frame` is the root's child, `drawn` the part without its invisible borders and shadow.
    void shown(WindowNumber window, const QRect& frame, const QRect& drawn);
    /// False when its size is not the known one, so that its borders may be others.
    bool moved(WindowNumber window, const QRect& frame);
    void removed(WindowNumber window) { areas_.erase(window); }
    void clear() { areas_.clear(); }
    bool knows(WindowNumber window) const { return areas_.contains(window); }

    /// Of the windows that are shown: a guard hides those below it.
    QRegion covered(const StackOrder& order) const;

  private:
    struct Area {
        QRect frame;
        QMargins invisible;
    };
    std::map<WindowNumber, Area> areas_;
};

} // namespace kova::ui
