// Where the desktop shows between the windows in tiles: the outer margin, the strips of footers, and what is left of
// gaps beside the dividers' handles. Some desktops move all windows aside when their wallpaper is clicked, and a press
// that misses a divider must not cause that.
#pragma once

#include "support/Geometry.h"
#include "windowing/PointerServicing.h"
#include "workspace/WorkspaceController.h"

#include <vector>

namespace kova {

/// `area` without what is covered, as rectangles that do not overlap; parts thinner than a point are left out.
std::vector<CGRect> uncoveredParts(const CGRect& area, const std::vector<CGRect>& covered);

/// Screen space. Only of displays with a handle or a window in a tile; empty tiles are left to the desktop.
std::vector<CGRect> desktopGuards(const WorkspaceController& workspace, const std::vector<DividerHandle>& handles);

/// Whether a window is in a tile of the display.
bool holdsWindows(const WorkspaceController& workspace, const DisplayID& displayID);

} // namespace kova
