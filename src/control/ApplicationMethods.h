// The methods that launch applications and end them.
#pragma once

#include "control/ControlHandling.h"
#include "control/LaunchCounts.h"
#include "support/JsonDecoding.h"
#include "workspace/WorkspaceController.h"

#include <memory>

namespace kova {

ControlReply listApplications(const WorkspaceController& controller, const LaunchCounts& counts);
/// A launch that is carried out is counted. The client gets a “launched” notification once the launch has worked or
/// failed.
ControlReply launchIntoTile(WorkspaceController& controller, LaunchCounts& counts, const JsonCursor& parameters,
                            const std::shared_ptr<ControlPeer>& peer);
enum class Ending { quit, forceQuit };
ControlReply endApplication(WorkspaceController& controller, const JsonCursor& parameters, Ending ending);
/// Force quits the applications in "confirmed". Without that parameter returns the question that the client asks the
/// user for confirmation.
ControlReply forceQuitAll(WorkspaceController& controller, const JsonCursor& parameters);

} // namespace kova
