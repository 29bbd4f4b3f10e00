// The user's actions, as methods of the socket. Each goes through the one door and answers what was said about it.
#pragma once

#include "commands/URLHandler.h"
#include "control/ControlHandling.h"
#include "support/JsonDecoding.h"
#include "workspace/WorkspaceController.h"

namespace kova {

/// What every action answers.
nlohmann::json performed(const WorkspaceController& controller, const std::optional<std::string>& message);

ControlReply performAction(WorkspaceController& controller, const WorkspaceAction& action);

/// Does what the "url" of the parameters asks for. Why nothing was done is told to the client alone: the workspace says
/// nothing about a URL that it does not know.
ControlReply openURL(WorkspaceController& controller, URLHandler& urls, const JsonCursor& parameters);

/// "direction" of the parameters; throws `DecodingError` when it is none.
WorkspaceDirection wantedDirection(const JsonCursor& parameters);

/// What can be undone, newest first.
ControlReply tellHistory(const WorkspaceController& controller);

} // namespace kova
