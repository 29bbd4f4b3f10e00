#include "workspace/LeftAlone.h"

namespace kova {

std::optional<LeftAlone> whyLeftAlone(const ManagedWindow& window, const LeftAloneFacts& facts) {
    if (facts.isZoomed) return LeftAlone::zoomed;
    if (facts.isHeldByPointer) return LeftAlone::heldByPointer;
    if (window.isElsewhere) return LeftAlone::onAnotherDesktop;
    if (window.isMinimized) return LeftAlone::minimized;
    if (window.isFullScreen) return LeftAlone::fullScreen;
    if (window.isMaximized) return LeftAlone::maximized;
    if (!window.isAnswering) return LeftAlone::notAnswering;
    if (facts.isApplicationHidden) return LeftAlone::applicationHidden;
    return std::nullopt;
}

std::string_view describe(LeftAlone cause) {
    switch (cause) {
    case LeftAlone::zoomed:
        return "has its whole display in focus mode";
    case LeftAlone::heldByPointer:
        return "is held by the pointer";
    case LeftAlone::minimized:
        return "is minimized";
    case LeftAlone::maximized:
        return "is maximized";
    case LeftAlone::fullScreen:
        return "is in full screen";
    case LeftAlone::onAnotherDesktop:
        return "is on another virtual desktop";
    case LeftAlone::notAnswering:
        return "does not answer";
    case LeftAlone::applicationHidden:
        return "is hidden with its application";
    }
    return "";
}

} // namespace kova
