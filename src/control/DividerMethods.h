// The dividers between tiles, as methods of the socket.
#pragma once

#include "control/ControlHandling.h"
#include "support/JsonDecoding.h"
#include "workspace/WorkspaceController.h"

namespace kova {

/// The dividers of the display that the parameters name, else of all displays.
ControlReply listDividers(const WorkspaceController& controller, const JsonCursor& parameters);

/// Moves one divider as the pointer does, from press to release: one undo step, within the minimum sizes of its
/// neighbors.
ControlReply dragDivider(WorkspaceController& controller, const JsonCursor& parameters);

/// Resets all dividers of the split to their places in the layout, in one undo step. Refused if none was moved.
ControlReply resetDivider(WorkspaceController& controller, const JsonCursor& parameters);

} // namespace kova
