// What was learned of applications, as methods of the socket.
#pragma once

#include "control/ControlHandling.h"
#include "support/JsonDecoding.h"

namespace kova {

class WorkspaceController;

/// Every application of which something is known, by name: role, least size, the tiles in which it is kept.
ControlReply listLearned(const WorkspaceController& controller);
ControlReply forgetApplication(WorkspaceController& controller, const JsonCursor& parameters);

} // namespace kova
