#include "app/OverlayBoard.h"

#include <utility>

namespace kova {

void OverlayBoard::provide(OverlaySection section, Fill fill) {
    fills_[section] = std::move(fill);
    refresh(section);
}

void OverlayBoard::refresh(OverlaySection section) {
    if (changed_) changed_(static_cast<OverlaySections>(section));
}

void OverlayBoard::close(OverlaySection section) {
    if (fills_.erase(section) != 0) refresh(section);
}

void OverlayBoard::update(OverlayContents& contents, OverlaySections sections) {
    OverlayContents empty;
    swapSections(contents, empty, sections);
    for (OverlaySections bit = 1; bit < kEveryOverlaySection; bit <<= 1) {
        const auto section = static_cast<OverlaySection>(bit);
        if (!holds(sections, section)) continue;
        const auto fill = fills_.find(section);
        if (fill != fills_.end()) fill->second(contents);
    }
}

} // namespace kova
