// The results of queries about the workspace.
#pragma once

#include "layout/LayoutSolver.h"
#include "layout/TileTarget.h"
#include "support/Identifiers.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace kova {

/// A tile with its present windows.
struct WorkspaceTile {
    TileTarget target;
    DisplayID displayID;
    TileSlot slot;
    CGRect frameOnScreen{};           // the tile's cell, in screen space
    CGRect frameForWindowService{};   // the frame of a window in this tile, in window-service space
    std::optional<WindowID> windowID; // the front window
    std::vector<WindowID> stack;      // front first
};

/// The numbers of scenes and rules in an imported file.
struct WorkspaceImportCounts {
    std::size_t scenes = 0; // all in the file, also those that exist already
    std::size_t rules = 0;
    std::vector<std::string> newScenes{}; // the names of the scenes that are added, in the order of the file
    std::vector<std::string> newRules{};  // the names of the rules that are added
    std::string message;                  // for the user
};

enum class PlacementVerdict {
    asRequested,
    drifted,
    underWay,  // the requested frame is still being verified
    leftAlone, // see `LeftAloneReason`
};

/// The requested and the actual frame of a tile's front window, in window-service space.
struct PlacementFinding {
    WindowID windowID;
    TileTarget target;
    CGRect requestedFrame{};
    std::optional<CGRect> actualFrame; // absent if it cannot be read
    PlacementVerdict verdict = PlacementVerdict::asRequested;
};

} // namespace kova
