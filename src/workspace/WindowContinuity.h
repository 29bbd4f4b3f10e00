// From one poll to the next: a window leaves the list only when the desktop says that it is gone.
#pragma once

#include "windowing/AccessibilityWindowService.h"
#include "workspace/WindowRecognition.h"

#include <vector>

namespace kova {

/// What a poll has to know of the windows of the poll before.
std::vector<KnownWindow> knownWindows(const std::vector<ManagedWindow>& windows);

/// Takes out of `found` the tabs of one native tab group that have changed places: a new window with the frame (within
/// 2 points) of one of its process that is listed no more is that window under another id, if neither has another
/// candidate. A window that still exists is a tab in the background only while the same Space is shown, as another
/// Space may have a window with that frame, too. Where another window that still exists has left the list without a
/// successor, another Space is shown whatever `shownSpace` says, which may be told late.
enum class ShownSpace { same, another };
std::vector<WindowSuccessor> takeTabSuccessors(WindowEnumeration& found, const std::vector<ManagedWindow>& before,
                                               ShownSpace shownSpace);

/// The windows listed, and among them at their former places those that are not listed and have not gone: one that
/// answers is elsewhere and not visible; one whose application is silent is as it was.
std::vector<ManagedWindow> withUnlisted(WindowEnumeration found, const std::vector<ManagedWindow>& before);

} // namespace kova
