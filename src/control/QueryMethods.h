// Adds the queries of displays, windows, tiles and the focus.
#pragma once

namespace kova {

class MethodTable;
class WorkspaceController;

void addQueryMethods(MethodTable& methods, const WorkspaceController& controller);

} // namespace kova
