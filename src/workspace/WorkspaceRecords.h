// Results of queries.
#pragma once

#include "layout/LayoutSolver.h"
#include "layout/TileTarget.h"
#include "support/Identifiers.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace kova {

/// A tile of a display with its present windows.
struct WorkspaceTile {
    TileTarget target;
    DisplayID displayID;
    TileSlot slot;
    CGRect frameOnScreen{};         // screen space, the tile's cell
    CGRect frameForWindowService{}; // window-service space, where a window of this tile is put (inset applied)
    std::optional<WindowID> windowID;
    std::vector<WindowID> stack; // front first
};

/// The numbers of scenes and rules in an imported file.
struct WorkspaceImportCounts {
    std::size_t scenes = 0; // in the file, also those that exist already
    std::size_t rules = 0;
    std::vector<std::string> newScenes{}; // names of those that are added, in their order
    std::vector<std::string> newRules{};
    std::string message; // the message for the user
};

enum class PlacementVerdict {
    asRequested,
    drifted,
    underWay,  // the request is not verified yet
    leftAlone, // zoomed, minimized, in full screen, hidden or being dragged
};

/// Where the front window of a tile should be, and where it is; frames in window-service space.
struct PlacementFinding {
    WindowID windowID;
    TileTarget target;
    CGRect requestedFrame{};
    std::optional<CGRect> actualFrame; // absent when it cannot be read
    PlacementVerdict verdict = PlacementVerdict::asRequested;
};

} // namespace kova
