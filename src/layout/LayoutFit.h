// Whether windows of given minimum sizes fit the tiles of a layout. Functions over values.
#pragma once

#include "layout/LayoutCatalogue.h"

#include <vector>

namespace kova {

/// For each window, by how many points its tile is too small; 0 by 0 if the tile is large enough. Each window gets the
/// tile that suits it best, the largest minimum size first, and tiles grow at the cost of neighbors with room to spare.
/// If there are more windows than tiles, each remaining window counts in the tile with its smallest shortfall. Sizes
/// are in points.
std::vector<CGSize> shortfalls(const LayoutDefinition& layout, const std::vector<CGSize>& minimumSizes, CGSize areaSize,
                               double tileInset);

} // namespace kova
