// Methods for the data learned about applications.
#pragma once

#include "control/ControlHandling.h"
#include "support/JsonDecoding.h"

namespace kova {

class WorkspaceController;

/// Lists the applications about which data was learned, sorted by name, with role, minimum size and usual tiles.
ControlReply listLearned(const WorkspaceController& controller);
ControlReply forgetApplication(WorkspaceController& controller, const JsonCursor& parameters);

} // namespace kova
