#include "control/Refusal.h"

#include "control/client/ControlCodes.h"

#include <utility>

namespace kova {

ControlFailure refusal(std::string message) {
    return {controlCode::refused, std::move(message), nullptr};
}

std::optional<ControlFailure> permissionFailure(const WorkspaceController& controller) {
    if (*controller.state().permissionState == AccessibilityPermissionState::granted) return std::nullopt;
    return ControlFailure{controlCode::noPermission, controller.permissionProblem(), nullptr};
}

ControlFailure refusal(const WorkspaceController& controller, std::string reason) {
    if (auto failure = permissionFailure(controller)) return *std::move(failure);
    return refusal(std::move(reason));
}

ControlFailure failureOf(const Outcome& outcome) {
    const bool isPermission = outcome.code() == RefusalCode::noPermission;
    return {isPermission ? controlCode::noPermission : controlCode::refused, outcome.message().value_or(""), nullptr};
}

} // namespace kova
