// Records the tile of every tiled window as placements of a scene.
#pragma once

#include "persistence/WorkspaceProductDocument.h"
#include "windowing/ManagedWindow.h"
#include "workspace/TileAssignments.h"

#include <functional>
#include <string>
#include <vector>

namespace kova {

/// A display with the slots of the layout that it shows, in the layout's order.
struct CapturedDisplay {
    DisplayID displayID;
    std::vector<SlotID> slotIDs;
};

struct CapturedPlacement {
    WindowID windowID;
    WorkspaceScenePlacement placement; // with a new id
};

/// Ordered by display, by slot in the layout's order, and by stack; every live window once, at its first position.
/// `findLive` returns null for a closed window.
std::vector<CapturedPlacement> capturePlacements(const std::vector<CapturedDisplay>& displays,
                                                 const TileAssignments& assignments,
                                                 const std::function<const ManagedWindow*(const WindowID&)>& findLive);

} // namespace kova
