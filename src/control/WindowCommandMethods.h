// Adds the methods for commands to one window, which all have a dry run, and the methods that list windows, verify
// frames, and pause KOVA.
#pragma once

#include "control/ControlHandling.h"
#include "support/JsonDecoding.h"
#include "workspace/WorkspaceController.h"

#include <optional>
#include <string>

namespace kova {

class MethodTable;

void addWindowCommandMethods(MethodTable& methods, WorkspaceController& controller);

/// The id of the window that the parameter "window" names. Without this parameter, the window that was focused last on
/// the display that "display" names. Absent without both parameters, which means the focused window.
ControlResult<std::optional<WindowID>> wantedWindow(const WorkspaceController& controller,
                                                    const JsonCursor& parameters);

/// The tile with the id `wanted`; else what `lookUpSlot` finds on the display that the parameters name, else on the
/// display of the window `windowID`, else on the current display.
ControlResult<TileTarget> wantedTile(const WorkspaceController& controller, const JsonCursor& parameters,
                                     const std::string& wanted, const std::optional<WindowID>& windowID);

} // namespace kova
