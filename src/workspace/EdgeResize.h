// When the user resizes a window at its tile's edge, the divider at that edge follows.
#pragma once

#include "layout/LayoutSolver.h"

#include <vector>

namespace kova {

struct DividerMove {
    LayoutDivider divider;
    double translationPoints = 0; // along the divider's axis
    bool operator==(const DividerMove&) const = default;
};

/// The dividers along the edges of a tile that the window's new frame has moved by more than two points, and by how
/// far. All frames are in layout space; `cell` is the tile (or the span), `before` and `after` the window's frame in
/// it.
std::vector<DividerMove> dividersMovedBy(const CGRect& cell, const CGRect& before, const CGRect& after,
                                         const std::vector<LayoutDivider>& dividers);

} // namespace kova
