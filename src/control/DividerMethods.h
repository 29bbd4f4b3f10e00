// Adds the methods of the dividers between tiles.
#pragma once

namespace kova {

class MethodTable;
class WorkspaceController;

void addDividerMethods(MethodTable& methods, WorkspaceController& controller);

} // namespace kova
