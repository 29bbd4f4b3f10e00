// The appearance of the workspace, as methods of the socket. The caller adds whether a client draws it.
#pragma once

#include "control/ControlHandling.h"
#include "support/JsonDecoding.h"
#include "workspace/WorkspaceController.h"

namespace kova {

/// Palettes are shown with the accent color in use.
ControlReply listThemes(const WorkspaceController& controller);
ControlReply selectTheme(WorkspaceController& controller, const JsonCursor& parameters);
ControlReply listAccentColors(const WorkspaceController& controller);
ControlReply selectAccentColor(WorkspaceController& controller, const JsonCursor& parameters);

/// Switches the setting to "isOn" of the parameters; the result repeats it.
ControlReply switchPreference(WorkspaceController& controller, const JsonCursor& parameters, action::Setting setting);

} // namespace kova
