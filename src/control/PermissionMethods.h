// The permission to manage windows, as methods of the socket.
#pragma once

#include "control/ControlHandling.h"

namespace kova {

class PermissionControl;
class WorkspaceController;

/// `permission` is null where there is none to ask for.
ControlReply permissionStatus(const WorkspaceController& controller, const PermissionControl* permission);
/// Has the system ask the user; nothing happens when the permission is there already.
ControlReply askForPermission(const WorkspaceController& controller, PermissionControl* permission);

} // namespace kova
