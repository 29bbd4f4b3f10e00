#include "ui/x11/ApplicationAreas.h"

namespace kova::ui {

void ApplicationAreas::shown(WindowNumber window, const QRect& frame, const QRect& drawn) {
    const QRect inside = drawn & frame;
    areas_[window] = {frame, QMargins(inside.left() - frame.left(), inside.top() - frame.top(),
                                      frame.right() - inside.right(), frame.bottom() - inside.bottom())};
}

bool ApplicationAreas::moved(WindowNumber window, const QRect& frame) {
    const auto found = areas_.find(window);
    if (found == areas_.end()) return true;
    if (found->second.frame.size() != frame.size()) return false;
    found->second.frame = frame;
    return true;
}

QRegion ApplicationAreas::covered(const StackOrder& order) const {
    QRegion region;
    for (const WindowNumber window : order.shownApplications()) {
        const auto found = areas_.find(window);
        if (found != areas_.end()) region += found->second.frame.marginsRemoved(found->second.invisible);
    }
    return region;
}

} // namespace kova::ui
