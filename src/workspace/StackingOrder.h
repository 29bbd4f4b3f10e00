// Finds windows that others cover, and the order in which to raise them.
#pragma once

#include "windowing/AccessibilityServicing.h"
#include "windowing/ManagedWindow.h"

#include <string>
#include <vector>

namespace kova {

/// The members of `windows` (window-service space) that another window partly covers, and those that are not on the
/// screen yet. `onScreen` is front to back; frames that differ by less than 2 points belong to the same window.
std::vector<const ManagedWindow*> coveredByOthers(const std::vector<const ManagedWindow*>& windows,
                                                  const std::vector<OnScreenWindow>& onScreen);

/// The windows to raise one after the other, so that no other window covers them. They keep their relative order, but
/// the most recently focused one is raised last. Empty if none is covered. `focusOrder` begins with the most recently
/// focused window.
std::vector<const ManagedWindow*> windowsToRaise(const std::vector<const ManagedWindow*>& windows,
                                                 const std::vector<OnScreenWindow>& onScreen,
                                                 const std::vector<WindowID>& focusOrder);

} // namespace kova
