// From one poll to the next: a window leaves the list only if the desktop says that it was closed.
#pragma once

#include "windowing/AccessibilityWindowService.h"
#include "workspace/WindowRecognition.h"

#include <vector>

namespace kova {

/// What a poll needs of the windows of the previous poll.
std::vector<KnownWindow> knownWindows(const std::vector<ManagedWindow>& windows);

/// Removes from `found` the renamed tabs of a native tab group and returns the renamings. A new window is the renamed
/// one if it has the process and the frame (within 2 points) of a window that left the list, and neither has another
/// candidate. If the former window still exists, this holds only while the same Space is shown, since another Space may
/// have a window with that frame. If another existing window left the list without a successor, another Space counts as
/// shown, since `shownSpace` may be late.
enum class ShownSpace { same, another };
std::vector<WindowSuccessor> takeTabSuccessors(WindowEnumeration& found, const std::vector<ManagedWindow>& before,
                                               ShownSpace shownSpace);

/// The listed windows, and at their former positions the windows that are not listed and were not closed: one that
/// responds is elsewhere and not visible; one whose application does not respond keeps its last state.
std::vector<ManagedWindow> withUnlisted(WindowEnumeration found, const std::vector<ManagedWindow>& before);

} // namespace kova
