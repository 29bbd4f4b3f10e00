// Keeps the list of windows continuous from poll to poll: a window stays in the list until the desktop reports it as
// closed.
#pragma once

#include "windowing/AccessibilityWindowService.h"
#include "workspace/WindowRecognition.h"

#include <vector>

namespace kova {

/// The data about the windows of the previous poll that the next poll needs.
std::vector<KnownWindow> knownWindows(const std::vector<ManagedWindow>& windows);

/// Whether the Space that was shown at the previous poll is still shown.
enum class ShownSpace { same, another };

/// A native tab group lists only its front tab, so another tab appears as a new window. Removes the replaced tabs from
/// `found` and returns the replacements. A new window replaces a window that left the list if both have the same
/// process and frame (within 2 points) and neither has another candidate. If the former window still exists, the
/// Space must be the same as well, because windows of different Spaces may have the same frame. `shownSpace` may be
/// outdated. So another Space also counts as shown if an existing window has left the list without a replacement.
std::vector<WindowSuccessor> takeTabSuccessors(WindowEnumeration& found, const std::vector<ManagedWindow>& before,
                                               ShownSpace shownSpace);

/// The listed windows and, at their former positions in the list, the unlisted windows that were not closed. An
/// unlisted window is elsewhere and not visible. If its application does not respond, the window keeps its last state
/// instead.
std::vector<ManagedWindow> withUnlisted(WindowEnumeration found, const std::vector<ManagedWindow>& before);

} // namespace kova
