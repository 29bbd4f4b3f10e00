// Plans commands for one window from values. A dry run prints the plan that the command would carry out.
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
    /// `wait`: another window displaces the window, which then waits in a stack.
    enum class Kind { place, wait, focus, floating };
    Kind kind = Kind::place;
    WindowID windowID;
    /// For `place`, the tile of this window. For `wait`, the tile of the window that displaces it.
    std::optional<TileTarget> target;
    bool operator==(const WindowStep&) const = default;
};

/// "place", "wait", "focus" or "float".
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

/// The values from which a command is planned.
struct WindowCommandInput {
    std::vector<ManagedWindow> windows;
    std::vector<WorkspaceTile> tiles; // of all displays, in layout order
    std::vector<Screen> screens;      // in the platform's order
    TileAssignments assignments;
    std::set<WindowID> floatingWindowIDs;
    std::vector<WindowID> focusOrder; // window ids, the most recent first
    std::optional<WindowID> focusedWindowID;
    std::optional<DisplayID> currentDisplayID;
    std::map<WindowID, DisplayID> displayIDByWindowID; // without the windows that no display shows
    /// The tiles that the window covers if it is placed in `target`, the anchor first; empty if there is no such tile.
    std::function<std::vector<TileTarget>(const ManagedWindow&, const TileTarget& target)> covering;
    double firstScreenMaxY = 0; // see `TileGeometry::firstScreenMaxY`
};

/// Why no command can move the window: it is in full screen or on another Space. Absent if commands can.
std::optional<std::string> whyNotMovable(const ManagedWindow& window);

/// The action of a plan that brings a stacked window to the front of its tile. Such a window was not moved by the user.
inline constexpr std::string_view kBringToFront = "bring to front";

std::variant<WindowPlan, WindowRefusal> planWindowCommand(const WindowCommand& command,
                                                          const WindowCommandInput& input);

} // namespace kova
