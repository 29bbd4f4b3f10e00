// Reasons why a window is left alone: it is not moved to its tile for now. The window keeps the tile and is moved when
// the reason ends.
#pragma once

#include "windowing/ManagedWindow.h"

#include <optional>
#include <string_view>

namespace kova {

enum class LeftAloneReason {
    zoomed, // the window owns its display in focus mode
    heldByPointer,
    minimized,
    maximized,
    fullScreen,
    onAnotherDesktop,
    notResponding,
    applicationHidden,
};

/// Facts about a window that `ManagedWindow` does not contain.
struct LeftAloneFacts {
    bool isZoomed = false;
    bool isHeldByPointer = false;
    bool isApplicationHidden = false;
};

/// The first reason that applies; absent if the window may be moved to its tile.
std::optional<LeftAloneReason> whyLeftAlone(const ManagedWindow& window, const LeftAloneFacts& facts);

/// The reason as the end of a sentence about the window, for example "is minimized".
std::string_view describe(LeftAloneReason cause);

} // namespace kova
