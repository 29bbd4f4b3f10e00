// Errors for operations that the workspace refused.
#pragma once

#include "control/ControlHandling.h"
#include "workspace/WorkspaceController.h"

#include <optional>
#include <string>

namespace kova {

ControlFailure refusal(std::string message);

/// Error if the accessibility permission is missing, otherwise absent.
std::optional<ControlFailure> withoutPermission(const WorkspaceController& controller);

/// Error for the missing permission, else with the reason.
ControlFailure refusal(const WorkspaceController& controller, std::string reason);
/// Error for a refused operation.
ControlFailure failureOf(const Outcome& outcome);

} // namespace kova
