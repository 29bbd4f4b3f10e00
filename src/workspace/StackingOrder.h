// Which windows lie below others on the screen.
#pragma once

#include "windowing/AccessibilityServicing.h"
#include "windowing/ManagedWindow.h"

#include <vector>

namespace kova {

/// Those of `windows` (window-service space) that a window not among them covers in part, and those that the screen
/// does not show yet. `onScreen` is front to back; frames that differ by less than 2 points are the same window's.
std::vector<const ManagedWindow*> coveredByOthers(const std::vector<const ManagedWindow*>& windows,
                                                  const std::vector<OnScreenWindow>& onScreen);

} // namespace kova
