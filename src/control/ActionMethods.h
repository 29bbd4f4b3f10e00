// Adds the methods for arranging, focusing, moving, zooming and undoing, for KOVA's URLs, and for the undo history.
#pragma once

#include "control/ControlHandling.h"
#include "workspace/WorkspaceController.h"

#include <optional>
#include <string>

namespace kova {

class MethodTable;
class URLHandler;

void addActionMethods(MethodTable& methods, WorkspaceController& controller, URLHandler& urls);

/// The result of an action that was carried out: `message`, and what the action may have changed.
nlohmann::json actionResult(const WorkspaceController& controller, const std::optional<std::string>& message);

/// Carries out the action. Returns its `actionResult`, or the error if the workspace refused the action.
ControlReply performAction(WorkspaceController& controller, const WorkspaceAction& action);

} // namespace kova
