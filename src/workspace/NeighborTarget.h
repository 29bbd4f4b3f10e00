// Finds the neighboring tile of a window in a direction.
#pragma once

#include "layout/TileTarget.h"
#include "support/Geometry.h"
#include "workspace/WorkspaceAction.h"

#include <map>
#include <optional>
#include <string>

namespace kova {

/// The key of the rectangle in `frames` that is nearest to `source` in the direction. All rectangles are in screen
/// space (y up). Distances are those between the middles; the part across the direction is multiplied by 2.25. Of
/// equally near rectangles the one with the smaller key is taken. Absent if no middle is more than one point away in
/// the direction.
std::optional<TileTarget> neighborTarget(const CGRect& source, WorkspaceDirection direction,
                                         const std::map<TileTarget, CGRect>& frames);

} // namespace kova
