// Finds out which windows of an application are on the screen. The window server lists rectangles without their
// accessibility elements, so each rectangle is matched with the window of the most similar frame.
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

/// Indices of the windows that are on the screen. Each rectangle in turn takes the most similar remaining window (the
/// earlier of two equal ones), however different it is. All frames are in the same coordinate space.
std::vector<std::size_t> visibleWindows(std::vector<VisibilityCandidate> candidates, std::span<const CGRect> onScreen);

} // namespace kova
