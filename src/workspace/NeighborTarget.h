// Finds the neighboring tile of a window in a direction.
#pragma once

#include "layout/TileTarget.h"
#include "support/Geometry.h"
#include "workspace/WorkspaceAction.h"

#include <map>
#include <optional>
#include <string>

namespace kova {

/// The key of the rectangle that is nearest to `source` in the direction; all are in screen space (y up). Distance
/// across the direction is multiplied by 2.25; of equal scores the smaller key is taken. Absent if no middle is more
/// than one point further in that direction.
std::optional<TileTarget> neighborTarget(const CGRect& source, WorkspaceDirection direction,
                                         const std::map<TileTarget, CGRect>& frames);

} // namespace kova
