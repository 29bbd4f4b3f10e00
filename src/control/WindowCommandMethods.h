// Commands for one window, as methods of the socket; each has a dry run.
#pragma once

#include "control/ControlHandling.h"
#include "support/JsonDecoding.h"
#include "workspace/WorkspaceController.h"

#include <optional>
#include <string>
#include <variant>

namespace kova {

/// The id of the window that the parameters name by "window", or that was focused last on their "display"; absent when
/// they name neither, which means the focused window.
ControlResult<std::optional<WindowID>> wantedWindow(const WorkspaceController& controller,
                                                    const JsonCursor& parameters);

/// The tile that `wanted` names: by its id, or by a name of a tile on the display that the parameters name, else on the
/// window's display, else on the current display.
ControlResult<TileTarget> wantedTile(const WorkspaceController& controller, const JsonCursor& parameters,
                                     const std::string& wanted, const std::optional<WindowID>& windowID);

ControlReply placeWindow(WorkspaceController& controller, const JsonCursor& parameters);
ControlReply swapWindows(WorkspaceController& controller, const JsonCursor& parameters);
ControlReply focusWindow(WorkspaceController& controller, const JsonCursor& parameters);
ControlReply focusDisplay(WorkspaceController& controller, const JsonCursor& parameters);
ControlReply moveToDisplay(WorkspaceController& controller, const JsonCursor& parameters);
ControlReply floatWindow(WorkspaceController& controller, const JsonCursor& parameters);
ControlReply tileWindow(WorkspaceController& controller, const JsonCursor& parameters);
ControlReply stepStack(WorkspaceController& controller, const JsonCursor& parameters);

/// Every tile with the windows in it, and the windows in none.
ControlReply listWindows(const WorkspaceController& controller);
/// The focused window; if there is none, also the window that was focused last on the current display.
ControlReply describeFocus(const WorkspaceController& controller);
/// The managed window at a point, for example where the user clicks to pick a window.
ControlReply findWindowAt(const WorkspaceController& controller, const JsonCursor& parameters);
/// Compares the frames of tiled windows with what was requested; with "repair" they are requested again.
ControlReply verifyPlacements(WorkspaceController& controller, const JsonCursor& parameters);

enum class Pausing { pause, resume };
ControlReply setPaused(WorkspaceController& controller, const JsonCursor& parameters, Pausing pausing);

} // namespace kova
