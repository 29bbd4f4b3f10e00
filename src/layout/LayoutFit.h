// Whether a window can have the room that it needs in some tile of a layout. Pure arithmetic.
#pragma once

#include "layout/LayoutCatalogue.h"

namespace kova {

/// By how many points the tile that suits a window best is too small for it; 0 by 0 when a tile holds the window, alone
/// in its layout and grown at the cost of its neighbors. Sizes are in points.
CGSize shortfallFor(const LayoutDefinition& layout, CGSize minimumSize, CGSize areaSize, double tileInset);

} // namespace kova
