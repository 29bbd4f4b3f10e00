// Methods of the menu, and of the program that draws the overlay.
#pragma once

#include "control/ControlHandling.h"
#include "control/MenuServing.h"
#include "control/UserInterfaceControl.h"
#include "support/JsonDecoding.h"

#include <functional>
#include <string>

namespace kova {

class OverlayBroadcast;
class WorkspaceController;

/// What is shown of a shortcut.
using ShortcutTexts = std::function<std::string(const KovaShortcut&)>;
/// `menu` and `interface` are null where there is none.
ControlReply listMenu(const MenuServing* menu, const ShortcutTexts& textOf);
ControlReply chooseFromMenu(MenuServing* menu, const WorkspaceController& controller, const JsonCursor& parameters);

ControlReply tellUserInterface(const UserInterfaceControl* interface);
enum class UserInterfaceSwitch { on, off, restart };
ControlReply switchUserInterface(UserInterfaceControl* interface, UserInterfaceSwitch change);
/// Asks the clients that draw the overlay to open something.
ControlReply showInUserInterface(OverlayBroadcast* overlay, const JsonCursor& parameters);

} // namespace kova
