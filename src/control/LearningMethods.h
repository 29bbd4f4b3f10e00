// Adds the methods of the data learned about applications.
#pragma once

namespace kova {

class MethodTable;
class WorkspaceController;

void addLearningMethods(MethodTable& methods, WorkspaceController& controller);

} // namespace kova
