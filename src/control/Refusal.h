// Why the workspace did not do what was asked.
#pragma once

#include "control/ControlHandling.h"
#include "workspace/WorkspaceController.h"

#include <optional>
#include <string>

namespace kova {

ControlFailure refusal(std::string message);

/// Why nothing can be done for want of the permission; absent when there is no want of it.
std::optional<ControlFailure> withoutPermission(const WorkspaceController& controller);

/// The missing permission, else the reason.
ControlFailure refusal(const WorkspaceController& controller, std::string reason);
/// Of an operation that was refused.
ControlFailure failureOf(const Outcome& outcome);

} // namespace kova
