// Finds the neighboring tile of a window in a direction.
#pragma once

#include "support/Geometry.h"
#include "workspace/WorkspaceAction.h"

#include <map>
#include <optional>
#include <string>

namespace kova {

inline constexpr const char* kDirectionalSourceKey = "__kova_directional_source__";

/// The key of the nearest rectangle in the direction from the one under `sourceKey`, in screen space (y up). The
/// sideways distance counts two and a quarter times; of equal scores the smaller key is taken. Absent if no rectangle
/// is more than a point further in that direction, or there is no source.
std::optional<std::string> neighbourTarget(const std::string& sourceKey, WorkspaceDirection direction,
                                           const std::map<std::string, CGRect>& frames);

} // namespace kova
