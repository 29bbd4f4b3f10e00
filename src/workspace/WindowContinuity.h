// Keeps the list of windows continuous from poll to poll: a window leaves it only once the desktop reports the window
// as closed.
#pragma once

#include "windowing/AccessibilityWindowService.h"
#include "workspace/WindowRecognition.h"

#include <vector>

namespace kova {

/// The data that a poll needs of the windows of the previous poll.
std::vector<KnownWindow> knownWindows(const std::vector<ManagedWindow>& windows);

/// Whether the Space that was shown at the former poll is still shown.
enum class ShownSpace { same, another };

/// A native tab group lists only its front tab, so another tab appears as a new window. Removes the replaced tabs from
/// `found` and returns the replacements. A new window replaces a window that left the list if both have the same
/// process and frame (within 2 points) and neither has another candidate. If the former window still exists, the same
/// Space must be shown as well, since a window of another Space may have that frame. `shownSpace` may be outdated:
/// another Space also counts as shown if a further existing window left the list without a successor.
std::vector<WindowSuccessor> takeTabSuccessors(WindowEnumeration& found, const std::vector<ManagedWindow>& before,
                                               ShownSpace shownSpace);

/// The listed windows and, at their former positions, the windows that are not listed but were not closed. Such a
/// window is elsewhere and not visible; if its application does not respond, the window keeps its last state.
std::vector<ManagedWindow> withUnlisted(WindowEnumeration found, const std::vector<ManagedWindow>& before);

} // namespace kova
