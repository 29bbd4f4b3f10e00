#include "control/PermissionMethods.h"

#include "control/MethodTable.h"
#include "control/PermissionControl.h"
#include "control/Refusal.h"
#include "workspace/WorkspaceController.h"

#include <nlohmann/json.hpp>

namespace kova {

namespace {

using nlohmann::json;

ControlReply permissionStatus(const WorkspaceController& controller, const PermissionControl* permission) {
    const auto state = *controller.state().permissionState;
    const bool isGranted = state == AccessibilityPermissionState::granted;
    return json{{"permission", describe(state)},
                {"problem", isGranted ? json(nullptr) : json(controller.permissionProblem())},
                {"canAsk", !isGranted && permission && permission->canAsk()}};
}

/// Makes the system ask the user for the permission; no-op if the permission has been granted.
ControlReply askForPermission(const WorkspaceController& controller, PermissionControl* permission) {
    if (*controller.state().permissionState != AccessibilityPermissionState::granted) {
        if (!permission || !permission->canAsk()) return refusal(controller.permissionProblem());
        permission->ask();
    }
    return permissionStatus(controller, permission);
}

} // namespace

void addPermissionMethods(MethodTable& methods, const WorkspaceController& controller, PermissionControl* permission) {
    methods.add("permission.status", {},
                [&controller, permission](const MethodCall&) { return permissionStatus(controller, permission); });
    methods.add("permission.ask", {},
                [&controller, permission](const MethodCall&) { return askForPermission(controller, permission); });
}

} // namespace kova
