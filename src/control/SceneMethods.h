// Adds the methods that capture, list, open, rename, delete and compare scenes.
#pragma once

namespace kova {

class DeletedScenes;
class MethodTable;
class SceneListeners;
class WorkspaceController;

void addSceneMethods(MethodTable& methods, WorkspaceController& controller, SceneListeners& listeners,
                     DeletedScenes& deleted);

} // namespace kova
