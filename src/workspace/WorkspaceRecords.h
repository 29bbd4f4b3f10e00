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
    CGRect frameOnScreen{};         // the tile's cell, in screen space
    CGRect frameForWindowService{}; // of a window in this tile (inset applied), in window-service space
    std::optional<WindowID> windowID;
    std::vector<WindowID> stack; // front first
};

/// The numbers of scenes and rules in an imported file.
struct WorkspaceImportCounts {
    std::size_t scenes = 0; // in the file, also those that exist already
    std::size_t rules = 0;
    std::vector<std::string> newScenes{}; // names of the scenes that are added, in the order of the file
    std::vector<std::string> newRules{};
    std::string message; // for the user
};

enum class PlacementVerdict {
    asRequested,
    drifted,
    underWay,  // the request is not verified yet
    leftAlone, // see `LeftAloneReason`
};

/// The requested and the actual frame of a tile's front window, in window-service space.
struct PlacementFinding {
    WindowID windowID;
    TileTarget target;
    CGRect requestedFrame{};
    std::optional<CGRect> actualFrame; // absent when it cannot be read
    PlacementVerdict verdict = PlacementVerdict::asRequested;
};

} // namespace kova
