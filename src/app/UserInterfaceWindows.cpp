#include "app/UserInterfaceWindows.h"

namespace kova {

std::optional<std::string> ensureUserInterface(const OverlayBoard& board, UserInterfaceControl* userInterface) {
    if (board.isWatched()) return std::nullopt;
    if (!userInterface) return "This KOVA has no user interface. “kova help” lists the commands for its settings";
    if (auto reason = userInterface->unavailableReason()) return reason;
    const UserInterfaceStatus status = userInterface->status();
    if (!status.isOn) return "kova-ui is switched off. Switch it on with “kova ui on”";
    if (!status.process && !userInterface->restart())
        return "kova-ui is not running, because KOVA is still starting. Try again in a moment";
    return std::nullopt;
}

} // namespace kova
