// Finds out from refused placements whether the window manager ignores requested positions.
#pragma once

#include "support/Geometry.h"

#include <vector>

namespace kova {

/// A visible window with a tile, as the last poll found it. Both frames are in the same coordinate space.
struct PlacedWindow {
    CGRect wanted{};
    CGRect actual{};
    bool hasRefusedAllAttempts = false;
};

/// True if there are at least two windows, each of which refused every attempt and is not at the origin of its tile. A
/// window that refuses only a size would be at that origin.
bool isPlacingIgnored(const std::vector<PlacedWindow>& windows);

} // namespace kova
