// Adds the methods that show and change layouts.
#pragma once

namespace kova {

class MethodTable;
class WorkspaceController;

void addLayoutMethods(MethodTable& methods, WorkspaceController& controller);

} // namespace kova
