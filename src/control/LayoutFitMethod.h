// The layouts for each display, and whether the windows there fit into them.
#pragma once

#include "control/ControlHandling.h"
#include "support/JsonDecoding.h"

namespace kova {

class WorkspaceController;

/// Lists the layouts for the display that the parameters name, else for all displays.
ControlReply fitLayouts(const WorkspaceController& controller, const JsonCursor& parameters);

} // namespace kova
