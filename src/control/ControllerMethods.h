// The socket's methods that need the controller alone: commands for windows, layouts and rules.
#pragma once

namespace kova {

class MethodTable;
class WorkspaceController;

/// Adds these methods to `methods`, which must not outlive `controller`.
void addControllerMethods(MethodTable& methods, WorkspaceController& controller);

} // namespace kova
