// The list of windows of a Mac's window server, in the numbers in which it comes. It is made by other programs, so any
// of them may be missing or impossible.
#pragma once

#include "windowing/AccessibilityServicing.h"

#include <optional>

namespace kova {

/// Absent is what was missing or no number.
struct WindowListEntry {
    std::optional<double> layer;
    std::optional<double> ownerProcess;
    std::optional<double> x, y, width, height; // window-service space
};

/// Absent unless the entry is complete and its numbers are possible.
std::optional<OnScreenWindow> onScreenWindow(const WindowListEntry& entry);

} // namespace kova
