// Plans commands for one window from values, so that a dry run prints exactly what the command would do.
#pragma once

#include "windowing/ManagedWindow.h"
#include "windowing/ScreenServicing.h"
#include "workspace/TileAssignments.h"
#include "workspace/WorkspaceAction.h"
#include "workspace/WorkspaceRecords.h"

#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <variant>
#include <vector>

namespace kova {

struct WindowStep {
    enum class Kind { place, wait, focus, floating };
    Kind kind = Kind::place;
    WindowID windowID;
    std::optional<TileTarget> target; // the tile into which the window is put or stacked; absent for the other kinds
    bool operator==(const WindowStep&) const = default;
};

/// "place", "wait", "focus", "float".
std::string_view describe(WindowStep::Kind kind);

struct WindowPlan {
    std::string action;            // the name of the undo step; empty if the command adds none
    std::string message;           // shown after the command
    std::vector<WindowStep> steps; // empty if nothing has to change
    bool operator==(const WindowPlan&) const = default;
};

struct WindowRefusal {
    std::string reason;
    bool operator==(const WindowRefusal&) const = default;
};

/// The input of planning.
struct WindowCommandInput {
    std::vector<ManagedWindow> windows;
    std::vector<WorkspaceTile> tiles; // of all displays, in layout order
    std::vector<Screen> screens;      // in the platform's order
    TileAssignments assignments;
    std::set<WindowID> floatingWindowIDs;
    std::vector<WindowID> focusOrder; // window ids, the most recent first
    std::optional<WindowID> focusedWindowID;
    std::optional<DisplayID> currentDisplayID;
    std::map<WindowID, DisplayID> displayIDByWindowID; // windows on no display are missing
    /// The tiles that the window covers when it is placed there, anchor first; empty for an unknown tile.
    std::function<std::vector<TileTarget>(const ManagedWindow&, const TileTarget& target)> covering;
    double firstScreenMaxY = 0;
};

std::variant<WindowPlan, WindowRefusal> planWindowCommand(const WindowCommand& command,
                                                          const WindowCommandInput& input);

} // namespace kova
