// Adds the methods that show and request the permission to manage windows.
#pragma once

namespace kova {

class MethodTable;
class PermissionControl;
class WorkspaceController;

/// `permission` is null on desktops without such a permission.
void addPermissionMethods(MethodTable& methods, const WorkspaceController& controller, PermissionControl* permission);

} // namespace kova
