// Starts kova-ui for the windows that it draws. Main thread only.
#pragma once

#include "app/OverlayBoard.h"
#include "control/UserInterfaceControl.h"

#include <optional>
#include <string>

namespace kova {

/// Starts kova-ui unless a client draws windows already. Returns why no window can be shown; absent on success. Does
/// not wait for the start: when kova-ui has started, it reads from the overlay's contents which window to show.
/// `userInterface` may be null.
std::optional<std::string> ensureUserInterface(const OverlayBoard& board, UserInterfaceControl* userInterface);

} // namespace kova
