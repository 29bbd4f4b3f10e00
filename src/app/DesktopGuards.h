// Some desktops move all windows aside when the wallpaper is clicked. A press that misses a divider must not cause
// that, so the areas in which the wallpaper is visible between the windows in tiles are guarded: the outer margin, the
// strips of footers, and the parts of gaps beside the dividers' handles.
#pragma once

#include "support/Geometry.h"
#include "windowing/PointerServicing.h"
#include "workspace/WorkspaceController.h"

#include <vector>

namespace kova {

/// The parts of `area` outside `covered`, as rectangles that do not overlap, without parts thinner than a point.
std::vector<CGRect> uncoveredParts(const CGRect& area, const std::vector<CGRect>& covered);

/// The areas to guard, in screen space: only on displays with a window in a tile, and not in focus mode.
std::vector<CGRect> desktopGuards(const WorkspaceController& workspace, const std::vector<DividerHandle>& handles);

/// Whether a window is in a tile of the display.
bool holdsWindows(const WorkspaceController& workspace, const DisplayID& displayID);

} // namespace kova
