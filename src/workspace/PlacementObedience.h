// Recognizes a window manager that places windows itself, by refused placements.
#pragma once

#include "support/Geometry.h"

#include <vector>

namespace kova {

/// A visible window with a tile, as the last poll found it. Frames are in one space.
struct PlacedWindow {
    CGRect wanted{};
    CGRect actual{};
    bool hasRefusedAllAttempts = false; // all attempts were refused
};

/// True if there are several windows, all of them refused every attempt, and none has its origin at the origin of its
/// tile: a window that only refuses a size has it there.
bool isPlacingIgnored(const std::vector<PlacedWindow>& windows);

} // namespace kova
