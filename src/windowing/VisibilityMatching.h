// Telling which windows of an application are on the screen. The window server lists rectangles without saying whose
// accessibility element each one is, so every rectangle is given to the window whose frame is most like it.
#pragma once

#include "support/Geometry.h"

#include <cstddef>
#include <span>
#include <vector>

namespace kova {

/// A window that may be on the screen: its index in the caller's list and its frame.
struct VisibilityCandidate {
    std::size_t index = 0;
    CGRect frame{};
};

/// Indices of the windows that are on the screen. Rectangles are served in their order, each takes the most similar
/// window that is left (the earlier one of two alike), however different it is. All in one coordinate space.
std::vector<std::size_t> visibleWindows(std::vector<VisibilityCandidate> candidates, std::span<const CGRect> onScreen);

} // namespace kova
