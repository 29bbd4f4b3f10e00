// Adds the methods that list, change and test the rules for windows.
#pragma once

namespace kova {

class MethodTable;
class WorkspaceController;

void addRuleMethods(MethodTable& methods, WorkspaceController& controller);

} // namespace kova
