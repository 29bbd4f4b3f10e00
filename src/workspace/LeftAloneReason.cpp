#include "workspace/LeftAloneReason.h"

namespace kova {

std::optional<LeftAloneReason> whyLeftAlone(const ManagedWindow& window, const LeftAloneFacts& facts) {
    if (facts.isZoomed) return LeftAloneReason::zoomed;
    if (facts.isHeldByPointer) return LeftAloneReason::heldByPointer;
    if (window.isElsewhere) return LeftAloneReason::onAnotherDesktop;
    if (window.isMinimized) return LeftAloneReason::minimized;
    if (window.isFullScreen) return LeftAloneReason::fullScreen;
    if (window.isMaximized) return LeftAloneReason::maximized;
    if (!window.isResponding) return LeftAloneReason::notResponding;
    if (facts.isApplicationHidden) return LeftAloneReason::applicationHidden;
    return std::nullopt;
}

std::string_view describe(LeftAloneReason cause) {
    switch (cause) {
    case LeftAloneReason::zoomed:
        return "has its whole display in focus mode";
    case LeftAloneReason::heldByPointer:
        return "is held by the pointer";
    case LeftAloneReason::minimized:
        return "is minimized";
    case LeftAloneReason::maximized:
        return "is maximized";
    case LeftAloneReason::fullScreen:
        return "is in full screen";
    case LeftAloneReason::onAnotherDesktop:
        return "is on another virtual desktop";
    case LeftAloneReason::notResponding:
        return "does not respond";
    case LeftAloneReason::applicationHidden:
        return "is hidden with its application";
    }
    return "";
}

} // namespace kova
