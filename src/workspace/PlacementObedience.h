// Whether the window manager places windows itself, so that placements by KOVA have no effect.
#pragma once

#include "support/Geometry.h"

#include <vector>

namespace kova {

/// A visible window with a tile, as the last poll found it. Frames are in one space.
struct PlacedWindow {
    CGRect wanted{};
    CGRect actual{};
    bool wasAskedEnough = false; // to go there, in vain
};

/// True when there are several windows, all were asked often enough, and none begins where its tile begins: a window
/// that only refuses a size begins there.
bool isPlacingIgnored(const std::vector<PlacedWindow>& windows);

} // namespace kova
