// Adds the methods that use the menu, and those that control the program that draws the overlay.
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

/// The objects that the methods use. They outlive the methods; a pointer is null if the agent has no such object.
struct UserInterfaceParts {
    const WorkspaceController& controller;
    MenuServing* menu = nullptr;
    ShortcutTexts textOf;
    UserInterfaceControl* interface = nullptr;
    UserInterfaceDialogs* dialogs = nullptr;
    OverlayBroadcast* overlay = nullptr;
    std::function<SettingsWindowControl*()> settings;     // returns null while the window cannot be opened
    std::function<OnboardingWindowControl*()> onboarding; // returns null while the window cannot be opened
};

void addUserInterfaceMethods(MethodTable& methods, UserInterfaceParts partsOfAgent);

} // namespace kova
