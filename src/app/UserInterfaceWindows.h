// Starts kova-ui for the windows that it draws. Main thread only.
#pragma once

#include "app/OverlayBoard.h"
#include "control/UserInterfaceControl.h"

#include <optional>
#include <string>

namespace kova {

/// Starts kova-ui unless a client draws windows. Returns why no window can be shown; absent on success. A starting
/// program reads the window to show from the overlay's contents, so this does not wait. `userInterface` may be null.
std::optional<std::string> ensureUserInterface(const OverlayBoard& board, UserInterfaceControl* userInterface);

} // namespace kova
