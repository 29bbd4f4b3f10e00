// Adds the methods of the menu, and of the program that draws the overlay.
#pragma once

#include "commands/KovaShortcut.h"

#include <functional>
#include <string>

namespace kova {

class MenuServing;
class MethodTable;
class OnboardingWindowControl;
class OverlayBroadcast;
class SettingsWindowControl;
class UserInterfaceControl;
class UserInterfaceDialogs;
class WorkspaceController;

/// Returns the text that shows a shortcut.
using ShortcutTexts = std::function<std::string(const KovaShortcut&)>;

/// All these objects outlive the methods.
struct UserInterfaceParts {
    const WorkspaceController& controller;
    MenuServing* menu = nullptr; // as each pointer, null if the agent has no such object
    ShortcutTexts textOf;
    UserInterfaceControl* interface = nullptr;
    UserInterfaceDialogs* dialogs = nullptr;
    OverlayBroadcast* overlay = nullptr;
    std::function<SettingsWindowControl*()> settings; // returns null while there is no such window
    std::function<OnboardingWindowControl*()> onboarding;
};

void addUserInterfaceMethods(MethodTable& methods, UserInterfaceParts partsOfAgent);

} // namespace kova
