// Makes errors for requests that were refused.
#pragma once

#include "control/ControlHandling.h"
#include "workspace/WorkspaceController.h"

#include <optional>
#include <string>

namespace kova {

ControlFailure refusal(std::string message);

/// The error for the missing permission to manage windows; absent if the permission is granted.
std::optional<ControlFailure> permissionFailure(const WorkspaceController& controller);

/// The error for the missing permission; if the permission is granted, an error with `reason`.
ControlFailure refusal(const WorkspaceController& controller, std::string reason);
/// The error for an operation that the workspace refused.
ControlFailure failureOf(const Outcome& outcome);

} // namespace kova
