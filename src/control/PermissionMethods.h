// The permission to manage windows, as methods of the socket.
#pragma once

#include "control/ControlHandling.h"

namespace kova {

class PermissionControl;
class WorkspaceController;

/// `permission` is null on desktops without such a permission.
ControlReply permissionStatus(const WorkspaceController& controller, const PermissionControl* permission);
/// Makes the system ask the user for the permission; no-op if it has been granted.
ControlReply askForPermission(const WorkspaceController& controller, PermissionControl* permission);

} // namespace kova
