#include "control/PermissionMethods.h"

#include "control/PermissionControl.h"
#include "control/Refusal.h"

#include <nlohmann/json.hpp>

namespace kova {

using nlohmann::json;

ControlReply permissionStatus(const WorkspaceController& controller, const PermissionControl* permission) {
    const auto state = *controller.state().permissionState;
    const bool isGranted = state == AccessibilityPermissionState::granted;
    return json{{"permission", describe(state)},
                {"problem", isGranted ? json(nullptr) : json(controller.permissionProblem())},
                {"canAsk", !isGranted && permission && permission->canAsk()}};
}

ControlReply askForPermission(const WorkspaceController& controller, PermissionControl* permission) {
    if (*controller.state().permissionState != AccessibilityPermissionState::granted) {
        if (!permission || !permission->canAsk()) return refusal(controller.permissionProblem());
        permission->ask();
    }
    return permissionStatus(controller, permission);
}

} // namespace kova
