// Adds the methods of the user's actions. Each goes through `WorkspaceController::perform` and returns its message.
#pragma once

#include "control/ControlHandling.h"
#include "workspace/WorkspaceController.h"

#include <optional>
#include <string>

namespace kova {

class MethodTable;
class URLHandler;

void addActionMethods(MethodTable& methods, WorkspaceController& controller, URLHandler& urls);

/// The result of every action.
nlohmann::json performed(const WorkspaceController& controller, const std::optional<std::string>& message);

ControlReply performAction(WorkspaceController& controller, const WorkspaceAction& action);

} // namespace kova
