// Tiles and frames that several tests of the workspace use.
#pragma once

#include "support/Geometry.h"

namespace kova {

/// The text of `Scenario::tiles` for Codex and Mail side by side on a display of 2560x1440.
inline constexpr const char* kHalves = "Codex 15,15 1254x1382 | Mail 1291,15 1254x1382";
/// A frame outside all tiles.
inline const CGRect kSomewhere = makeRect(300, 300, 800, 600);

} // namespace kova
