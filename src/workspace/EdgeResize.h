// Moves the dividers at the edges of a tile when the user resizes the tile's window.
#pragma once

#include "layout/LayoutSolver.h"

#include <vector>

namespace kova {

struct DividerMove {
    LayoutDivider divider;
    double translationPoints = 0; // along the divider's axis
    bool operator==(const DividerMove&) const = default;
};

/// The dividers at those window edges that have moved by more than two points, each with the distance. All frames are
/// in layout space. `cell` is the rectangle of the tile or the span; `before` and `after` are the window's frames.
std::vector<DividerMove> dividersMovedBy(const CGRect& cell, const CGRect& before, const CGRect& after,
                                         const std::vector<LayoutDivider>& dividers);

} // namespace kova
