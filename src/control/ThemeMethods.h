// Adds the methods that show and change the workspace's appearance, and those that switch a setting of KOVA.
#pragma once

#include <functional>

namespace kova {

class MethodTable;
class WorkspaceController;

/// `isDrawn` returns whether a client draws the overlay. Results contain its value, since without such a client a new
/// appearance is not visible.
void addThemeMethods(MethodTable& methods, WorkspaceController& controller, std::function<bool()> isDrawn);

} // namespace kova
