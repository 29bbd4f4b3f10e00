// Finds the neighboring tile of a window in a direction.
#pragma once

#include "layout/TileTarget.h"
#include "support/Geometry.h"
#include "workspace/WorkspaceAction.h"

#include <map>
#include <optional>
#include <string>

namespace kova {

/// The key of the nearest rectangle in the direction from a rectangle; all are in screen space (y up). The sideways
/// distance counts two and a quarter times; of equal scores the smaller key is taken. Absent if no rectangle is more
/// than a point further in that direction.
std::optional<TileTarget> neighbourTarget(const CGRect& source, WorkspaceDirection direction,
                                          const std::map<TileTarget, CGRect>& frames);

} // namespace kova
