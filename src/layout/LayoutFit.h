// Computes by how much the tiles of a layout are too small for windows with given minimum sizes.
#pragma once

#include "layout/LayoutCatalogue.h"

#include <vector>

namespace kova {

/// For each window, by how many points its tile is too small; 0 by 0 if the tile is large enough. Windows get
/// tiles in the order of their minimum sizes, the largest first: each gets the free tile in which it lacks the fewest
/// points. Then tiles grow at the cost of neighbors that are larger than necessary. If there are more windows than
/// tiles, each remaining window is compared with the tile in which it lacks the fewest points. Sizes are in points.
std::vector<CGSize> shortfalls(const LayoutDefinition& layout, const std::vector<CGSize>& minimumSizes, CGSize areaSize,
                               double tileInset);

} // namespace kova
