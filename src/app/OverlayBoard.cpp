#include "app/OverlayBoard.h"

#include <utility>

namespace kova {

namespace {

void copySection(OverlaySection section, const OverlayContents& from, OverlayContents& to) {
    switch (section) {
    case OverlaySection::isSuspended:
        to.isSuspended = from.isSuspended;
        return;
    case OverlaySection::appearance:
        to.appearance = from.appearance;
        return;
    case OverlaySection::displays:
        to.displays = from.displays;
        return;
    case OverlaySection::tiles:
        to.tiles = from.tiles;
        return;
    case OverlaySection::dividers:
        to.dividers = from.dividers;
        return;
    case OverlaySection::drag:
        to.drag = from.drag;
        return;
    case OverlaySection::message:
        to.message = from.message;
        return;
    case OverlaySection::settingsWindow:
        to.windows.settings = from.windows.settings;
        return;
    case OverlaySection::onboardingWindow:
        to.windows.onboarding = from.windows.onboarding;
        return;
    }
}

} // namespace

void OverlayBoard::show(OverlaySection section, Fill fill) {
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
    const OverlayContents empty;
    for (OverlaySections bit = 1; bit < kEveryOverlaySection; bit <<= 1) {
        const auto section = static_cast<OverlaySection>(bit);
        if (!holds(sections, section)) continue;
        copySection(section, empty, contents);
        const auto fill = fills_.find(section);
        if (fill != fills_.end()) fill->second(contents);
    }
}

} // namespace kova
