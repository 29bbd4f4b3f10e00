// Adds the commands for one window, each with a dry run, and the methods that list windows, verify frames and pause.
#pragma once

#include "control/ControlHandling.h"
#include "support/JsonDecoding.h"
#include "workspace/WorkspaceController.h"

#include <optional>
#include <string>

namespace kova {

class MethodTable;

void addWindowCommandMethods(MethodTable& methods, WorkspaceController& controller);

/// The id of the window that the parameters name by "window", or that was focused last on their "display"; absent when
/// they name neither, which means the focused window.
ControlResult<std::optional<WindowID>> wantedWindow(const WorkspaceController& controller,
                                                    const JsonCursor& parameters);

/// The tile that `wanted` names: by its id, or by a name of a tile on the display that the parameters name, else on the
/// window's display, else on the current display.
ControlResult<TileTarget> wantedTile(const WorkspaceController& controller, const JsonCursor& parameters,
                                     const std::string& wanted, const std::optional<WindowID>& windowID);

} // namespace kova
