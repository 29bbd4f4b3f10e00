// Scenes, as methods of the socket.
#pragma once

#include "control/ControlHandling.h"
#include "control/SceneListeners.h"
#include "support/JsonDecoding.h"
#include "workspace/WorkspaceController.h"

namespace kova {

ControlReply captureScene(WorkspaceController& controller, const JsonCursor& parameters);
/// Lists the scenes, the newest last.
ControlReply listScenes(const WorkspaceController& controller);
ControlReply showScene(const WorkspaceController& controller, const JsonCursor& parameters);
/// Responds at once, before launched applications show their windows. With “wait” the client gets the final report
/// later.
ControlReply openScene(WorkspaceController& controller, SceneListeners& listeners, const JsonCursor& parameters,
                       const std::shared_ptr<ControlPeer>& peer);
ControlReply renameScene(WorkspaceController& controller, const JsonCursor& parameters);
ControlReply diffScene(const WorkspaceController& controller, const JsonCursor& parameters);

} // namespace kova
