// Commands for one window: what each would do is planned from values, so that a dry run prints what the command does.
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

enum class DisplayStep { next, previous };
/// A step through the displays in the platform's order, with wrap-around, or a display id.
using DisplayChoice = std::variant<DisplayStep, std::string>;
/// The neighbouring tile in a direction, or a tile-target id.
using TileChoice = std::variant<WorkspaceDirection, std::string>;

/// An absent window id stands for the focused window.
namespace command {
/// Puts the window in front of the tile.
struct Place {
    std::optional<std::string> windowID;
    std::string targetID;
};
/// The same, with the tile's number in the layout of the window's display, from 1.
struct PlaceInNumbered {
    std::optional<std::string> windowID;
    std::size_t number = 1;
};
/// Exchanges the window with the front window of a tile; each tile keeps what waits behind.
struct Swap {
    std::optional<std::string> windowID;
    TileChoice with;
};
/// Focuses the window; one that waits in a stack comes to the front of its tile first.
struct FocusWindow {
    std::optional<std::string> windowID;
};
/// Focuses the window of the display that had the keyboard last, else the first that is in front of a tile there.
struct FocusDisplay {
    DisplayChoice display;
};
/// Moves the window to a free tile of the display, else to the tile of the same slot or at the same place.
struct MoveToDisplay {
    std::optional<std::string> windowID;
    DisplayChoice display;
};
/// Takes the window out of its tile; arrangements and rules leave it alone until it is put into a tile again.
struct Float {
    std::optional<std::string> windowID;
};
/// Puts the window into the free tile nearest to it on its display, else into the one under its middle.
struct Tile {
    std::optional<std::string> windowID;
};
/// `Float` for a window in a tile, else `Tile`.
struct ToggleFloating {
    std::optional<std::string> windowID;
};
} // namespace command

using WindowCommand =
    std::variant<command::Place, command::PlaceInNumbered, command::Swap, command::FocusWindow, command::FocusDisplay,
                 command::MoveToDisplay, command::Float, command::Tile, command::ToggleFloating>;

struct WindowStep {
    enum class Kind { place, wait, focus, floating };
    Kind kind = Kind::place;
    std::string windowID;
    std::optional<std::string> targetID; // the tile that it is put into, or waits in; absent for the other kinds
    bool operator==(const WindowStep&) const = default;
};

/// "place", "wait", "focus", "float".
std::string_view describe(WindowStep::Kind kind);

struct WindowPlan {
    std::string action;            // the name of the undo step; empty when there is nothing to undo
    std::string message;           // what is said once it is done
    std::vector<WindowStep> steps; // none when all is as it should be
    bool operator==(const WindowPlan&) const = default;
};

struct WindowRefusal {
    std::string reason;
    bool operator==(const WindowRefusal&) const = default;
};

/// What planning looks at.
struct WindowCommandInput {
    std::vector<ManagedWindow> windows;
    std::vector<WorkspaceTile> tiles; // of all displays, in layout order
    std::vector<Screen> screens;      // in the platform's order
    TileAssignments assignments;
    std::set<std::string> floatingWindowIDs;
    std::vector<std::string> focusOrder; // window ids, the most recent first
    std::optional<std::string> focusedWindowID;
    std::optional<std::string> currentDisplayID;
    std::map<std::string, std::string> displayIDByWindowID; // windows on no display are missing
    /// The tiles that the window covers when it is placed there, anchor first; empty for an unknown tile.
    std::function<std::vector<std::string>(const ManagedWindow&, const std::string& targetID)> covering;
    double firstScreenMaxY = 0;
};

std::variant<WindowPlan, WindowRefusal> planWindowCommand(const WindowCommand& command,
                                                          const WindowCommandInput& input);

} // namespace kova
