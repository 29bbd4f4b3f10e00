#include "app/UserInterfaceWindows.h"

namespace kova {

std::optional<std::string> whyNoWindows(const OverlayBoard& board, UserInterfaceControl* userInterface) {
    if (board.isWatched()) return std::nullopt;
    if (!userInterface) return "No program that shows windows belongs to KOVA here. Use “kova help” for the settings";
    if (auto absence = userInterface->absence()) return absence;
    const UserInterfaceStatus status = userInterface->status();
    if (!status.isOn) return "kova-ui is switched off. Switch it on with “kova ui on”";
    if (!status.process && !userInterface->restart()) return "kova-ui is not running, and KOVA has not started yet";
    return std::nullopt;
}

} // namespace kova
