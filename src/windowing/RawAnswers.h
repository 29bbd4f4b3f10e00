// The raw answers of an accessibility interface and of a window server, in the numbers in which they come, and what
// they mean. They come from other programs, so any of them may be missing or wrong.
#pragma once

#include "windowing/AccessibilityServicing.h"

#include <optional>

namespace kova {

enum class AccessibilityOutcome {
    answered, // done, or refused by an application that is well
    gone,     // the element, or its application, is no more
    silent    // the application did not answer
};

/// `error` as the Mac numbers it; 0 is success.
AccessibilityOutcome accessibilityOutcome(int error);

/// What the answer to a question to a window that is not listed says of it. An interface that is switched off, and a
/// failure without a reason, say nothing.
WindowPresence windowPresence(int error);

/// One window as the window server lists it; absent is what was missing or no number.
struct WindowListEntry {
    std::optional<double> layer;
    std::optional<double> ownerProcess;
    std::optional<double> x, y, width, height; // window-service space
};

/// Absent unless the entry is complete and its numbers are possible.
std::optional<OnScreenWindow> onScreenWindow(const WindowListEntry& entry);

} // namespace kova
