// Finds the tile that is next to a window in a direction.
#pragma once

#include "layout/TileTarget.h"
#include "support/Geometry.h"
#include "workspace/WorkspaceAction.h"

#include <map>
#include <optional>
#include <string>

namespace kova {

/// The key of the rectangle in `frames` that is nearest to `source` in the direction. All rectangles are in screen
/// space (y up). The distance is measured between the centers: the part along the direction, plus 2.25 times the part
/// across it. Of equally near rectangles, the one with the smallest key is taken. Absent if no center is more than one
/// point away in the direction.
std::optional<TileTarget> neighborTarget(const CGRect& source, WorkspaceDirection direction,
                                         const std::map<TileTarget, CGRect>& frames);

} // namespace kova
