// The methods that show and change layouts.
#pragma once

#include "control/ControlHandling.h"
#include "support/JsonDecoding.h"
#include "workspace/WorkspaceController.h"

namespace kova {

ControlReply showLayout(const WorkspaceController& controller, const JsonCursor& parameters);
ControlReply selectLayout(WorkspaceController& controller, const JsonCursor& parameters);
ControlReply stepLayout(WorkspaceController& controller, const JsonCursor& parameters, LayoutStep step);
ControlReply resetLayoutSizes(WorkspaceController& controller, const JsonCursor& parameters);
/// Sets the application to which arrangements offer the tiles of a slot first; clears it if the parameters name none.
ControlReply preferApplication(WorkspaceController& controller, const JsonCursor& parameters);
ControlReply setTileInset(WorkspaceController& controller, const JsonCursor& parameters);

} // namespace kova
