// Adds the methods that launch applications and end them.
#pragma once

namespace kova {

class LaunchCounts;
class MethodTable;
class WorkspaceController;

void addApplicationMethods(MethodTable& methods, WorkspaceController& controller, LaunchCounts& launches);

} // namespace kova
