// Adds the method that explains in plain words why windows are where they are.
#pragma once

namespace kova {

class MethodTable;
class WorkspaceController;

void addExplanationMethods(MethodTable& methods, const WorkspaceController& controller);

} // namespace kova
