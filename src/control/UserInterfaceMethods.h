// Methods of the menu, and of the program that draws the overlay.
#pragma once

#include "control/ControlHandling.h"
#include "control/MenuServing.h"
#include "control/UserInterfaceControl.h"
#include "support/JsonDecoding.h"

#include <array>
#include <functional>
#include <string>
#include <string_view>

namespace kova {

class OnboardingWindowControl;
class OverlayBroadcast;
class SettingsWindowControl;
class WorkspaceController;

/// Returns the text that shows a shortcut.
using ShortcutTexts = std::function<std::string(const KovaShortcut&)>;
/// `menu` and `interface` are null where there is none.
ControlReply listMenu(const MenuServing* menu, const ShortcutTexts& textOf);
ControlReply chooseFromMenu(MenuServing* menu, const WorkspaceController& controller, const JsonCursor& parameters);

/// Takes the report of kova-ui that it cannot show the contents.
ControlReply noteUserInterfaceProblem(UserInterfaceControl* interface, const JsonCursor& parameters,
                                      const std::shared_ptr<ControlPeer>& reporter);
ControlReply userInterfaceStatus(const UserInterfaceControl* interface);
enum class UserInterfaceSwitch { on, off, restart };
ControlReply switchUserInterface(UserInterfaceControl* interface, UserInterfaceSwitch change);

/// The objects that show windows of kova-ui; null where the desktop has none.
struct UserInterfaceWindows {
    OverlayBroadcast* overlay = nullptr;
    SettingsWindowControl* settings = nullptr;
    OnboardingWindowControl* onboarding = nullptr;
};
/// The panes of the settings window, in their order.
inline constexpr std::array<std::string_view, 8> kSettingsPanes = {"general", "layouts",    "shortcuts",    "rules",
                                                                   "scenes",  "appearance", "applications", "about"};
ControlReply showInUserInterface(const UserInterfaceWindows& windows, const JsonCursor& parameters);
ControlReply hideInUserInterface(const UserInterfaceWindows& windows, const JsonCursor& parameters);
ControlReply showSettings(const UserInterfaceWindows& windows, const JsonCursor& parameters);

} // namespace kova
