// The user's actions, as methods of the socket. Each goes through `WorkspaceController::perform` and returns its
// message.
#pragma once

#include "commands/URLHandler.h"
#include "control/ControlHandling.h"
#include "support/JsonDecoding.h"
#include "workspace/WorkspaceController.h"

namespace kova {

/// The result of every action.
nlohmann::json performed(const WorkspaceController& controller, const std::optional<std::string>& message);

ControlReply performAction(WorkspaceController& controller, const WorkspaceAction& action);

/// Arranges all windows; with "dryRun" only returns the plan.
ControlReply arrange(WorkspaceController& controller, const JsonCursor& parameters);

/// Carries out the "url" of the parameters. An error goes to the client only: the workspace shows no message for an
/// unknown URL.
ControlReply openURL(WorkspaceController& controller, URLHandler& urls, const JsonCursor& parameters);

/// "direction" of the parameters; throws `DecodingError` if it is invalid.
WorkspaceDirection wantedDirection(const JsonCursor& parameters);

/// The actions that can be undone, newest first.
ControlReply listHistory(const WorkspaceController& controller);

} // namespace kova
