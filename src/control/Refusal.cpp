#include "control/Refusal.h"

#include "control/client/ControlCodes.h"

#include <utility>

namespace kova {

ControlFailure refusal(std::string message) {
    return {controlCode::refused, std::move(message), nullptr};
}

std::optional<ControlFailure> withoutPermission(const WorkspaceController& controller) {
    if (*controller.state().permissionState == AccessibilityPermissionState::granted) return std::nullopt;
    return ControlFailure{controlCode::noPermission, controller.permissionProblem(), nullptr};
}

std::optional<std::string> Listening::heard() const {
    if (controller_.messagesShown() == before_) return std::nullopt;
    return *controller_.state().lastActionMessage;
}

ControlFailure Listening::refusalOr(std::string reason) const {
    if (auto failure = withoutPermission(controller_)) return *std::move(failure);
    return refusal(heard().value_or(std::move(reason)));
}

} // namespace kova
