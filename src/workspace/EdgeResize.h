// Finds the dividers that must move when the user resizes the window of a tile.
#pragma once

#include "layout/LayoutSolver.h"

#include <vector>

namespace kova {

struct DividerMove {
    LayoutDivider divider;
    double translationPoints = 0; // along the divider's axis
    bool operator==(const DividerMove&) const = default;
};

/// Finds the edges of the window that have moved by more than two points. Returns the dividers at these edges, each
/// with the distance. `cell` is the rectangle of the tile or the span. `before` and `after` are the frames of the
/// window before and after the resize. All rectangles are in layout space.
std::vector<DividerMove> dividersMovedBy(const CGRect& cell, const CGRect& before, const CGRect& after,
                                         const std::vector<LayoutDivider>& dividers);

} // namespace kova
