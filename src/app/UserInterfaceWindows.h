// What the windows that kova-ui draws have in common. Main thread only.
#pragma once

#include "app/OverlayBoard.h"
#include "control/UserInterfaceControl.h"

#include <optional>
#include <string>

namespace kova {

/// Why no window can be shown; absent when a program draws windows, or has been started to. A program that is starting
/// finds the window to show among the contents, so there is nothing to wait for. `userInterface` may be null.
std::optional<std::string> ensureUserInterface(const OverlayBoard& board, UserInterfaceControl* userInterface);

} // namespace kova
