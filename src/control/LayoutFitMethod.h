// The method “layout.fit”: which layouts the windows of a display fit into.
#pragma once

#include "control/ControlHandling.h"
#include "support/JsonDecoding.h"

namespace kova {

class WorkspaceController;

/// Lists, for the display that the parameters name or else for every display, all layouts and whether the display's
/// windows fit into them.
ControlReply fitLayouts(const WorkspaceController& controller, const JsonCursor& parameters);

} // namespace kova
