// Recognizes by refused placements that a window manager places windows itself.
#pragma once

#include "support/Geometry.h"

#include <vector>

namespace kova {

/// A visible window with a tile, as the last poll found it. Frames are in one space.
struct PlacedWindow {
    CGRect wanted{};
    CGRect actual{};
    bool hasRefusedAllAttempts = false;
};

/// True if there are at least two windows, each of which refused every attempt and is not at the origin of its tile. A
/// window that refuses only a size would be at that origin.
bool isPlacingIgnored(const std::vector<PlacedWindow>& windows);

} // namespace kova
