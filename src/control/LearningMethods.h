// Adds the methods that list and forget what KOVA learned about applications.
#pragma once

namespace kova {

class MethodTable;
class WorkspaceController;

void addLearningMethods(MethodTable& methods, WorkspaceController& controller);

} // namespace kova
