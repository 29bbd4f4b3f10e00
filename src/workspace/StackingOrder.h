// Which windows lie below others on the screen, and in which order they come above them.
#pragma once

#include "windowing/AccessibilityServicing.h"
#include "windowing/ManagedWindow.h"

#include <string>
#include <vector>

namespace kova {

/// Those of `windows` (window-service space) that a window not among them covers in part, and those that the screen
/// does not show yet. `onScreen` is front to back; frames that differ by less than 2 points are the same window's.
std::vector<const ManagedWindow*> coveredByOthers(const std::vector<const ManagedWindow*>& windows,
                                                  const std::vector<OnScreenWindow>& onScreen);

/// The windows to raise, in the order of the calls, so that no other window covers them. Their relative order is kept,
/// but the most recently focused one is raised last. Empty when none is covered. `focusOrder` has ids of windows, the
/// most recent first.
std::vector<const ManagedWindow*> windowsToRaise(const std::vector<const ManagedWindow*>& windows,
                                                 const std::vector<OnScreenWindow>& onScreen,
                                                 const std::vector<std::string>& focusOrder);

} // namespace kova
