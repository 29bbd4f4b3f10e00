// Parses the list of windows of a Mac's window server. The entries come from other programs, so any number may be
// missing or out of range.
#pragma once

#include "windowing/AccessibilityServicing.h"

#include <optional>

namespace kova {

/// Members are absent if missing or not a number.
struct WindowListEntry {
    std::optional<double> layer;
    std::optional<double> ownerProcess;
    std::optional<double> x, y, width, height; // window-service space
};

/// Absent unless the entry is complete and its numbers are in range.
std::optional<OnScreenWindow> onScreenWindow(const WindowListEntry& entry);

} // namespace kova
