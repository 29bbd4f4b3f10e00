// Which tile lies next to a window in a direction.
#pragma once

#include "support/Geometry.h"
#include "workspace/WorkspaceAction.h"

#include <map>
#include <optional>
#include <string>

namespace kova {

inline constexpr const char* kDirectionalSourceKey = "__kova_directional_source__";

/// The key of the rectangle that lies best in the direction from the one under `sourceKey`, in screen space (y up).
/// What is off to the side counts two and a quarter times; equal scores go to the smaller key. Absent when nothing lies
/// there by more than a point, or there is no source.
std::optional<std::string> neighbourTarget(const std::string& sourceKey, WorkspaceDirection direction,
                                           const std::map<std::string, CGRect>& frames);

} // namespace kova
