// Whether windows have the room that they need in the tiles of a layout. Pure arithmetic.
#pragma once

#include "layout/LayoutCatalogue.h"

#include <vector>

namespace kova {

/// By how many points the tile of each window is too small for it, in the order of the windows; 0 by 0 where it is
/// large enough. Each window gets the tile that suits it best, the largest minimum size first, and tiles grow at the
/// cost of neighbors that have room to spare. Windows without a tile of their own are counted in the tile with the
/// smallest shortfall. Sizes are in points.
std::vector<CGSize> shortfalls(const LayoutDefinition& layout, const std::vector<CGSize>& minimumSizes, CGSize areaSize,
                               double tileInset);

} // namespace kova
