// Adds the methods of the workspace's appearance, and those that switch a setting of KOVA.
#pragma once

#include <functional>

namespace kova {

class MethodTable;
class WorkspaceController;

/// Results say whether a client draws the overlay, which `isDrawn` returns.
void addThemeMethods(MethodTable& methods, WorkspaceController& controller, std::function<bool()> isDrawn);

} // namespace kova
