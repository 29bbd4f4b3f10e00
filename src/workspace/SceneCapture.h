// Where every tiled window is, in the words of a scene.
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
    std::string displayID;
    std::vector<std::string> slotIDs;
};

struct CapturedPlacement {
    std::string windowID;
    WorkspaceScenePlacement placement; // with an identity of its own
};

/// By display, then by the layout's slots, then by stack; every live window once, where it comes first. `findLive`
/// gives null for a window that is gone.
std::vector<CapturedPlacement>
capturePlacements(const std::vector<CapturedDisplay>& displays, const TileAssignments& assignments,
                  const std::function<const ManagedWindow*(const std::string&)>& findLive);

} // namespace kova
