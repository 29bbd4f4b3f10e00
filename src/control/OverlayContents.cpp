#include "control/OverlayContents.h"

#include <utility>

namespace kova {

void swapSections(OverlayContents& one, OverlayContents& other, OverlaySections sections) {
    const auto exchange = [&](OverlaySection section, auto& ofOne, auto& ofOther) {
        if (holds(sections, section)) std::swap(ofOne, ofOther);
    };
    exchange(OverlaySection::isSuspended, one.isSuspended, other.isSuspended);
    exchange(OverlaySection::appearance, one.appearance, other.appearance);
    exchange(OverlaySection::displays, one.displays, other.displays);
    exchange(OverlaySection::tiles, one.tiles, other.tiles);
    exchange(OverlaySection::dividers, one.dividers, other.dividers);
    exchange(OverlaySection::drag, one.drag, other.drag);
    exchange(OverlaySection::message, one.message, other.message);
    exchange(OverlaySection::settingsWindow, one.windows.settings, other.windows.settings);
    exchange(OverlaySection::onboardingWindow, one.windows.onboarding, other.windows.onboarding);
}

} // namespace kova
