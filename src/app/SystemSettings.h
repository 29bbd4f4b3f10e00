// The settings for the start at login and for hiding the Dock, as the control socket offers them.
#pragma once

#include "control/SystemSetting.h"

namespace kova {

class DockAutoHideController;
class LaunchAtLoginController;

/// The controllers outlive their settings.
SystemSetting startAtLoginSetting(LaunchAtLoginController& controller);
SystemSetting dockAutoHideSetting(DockAutoHideController& controller);

} // namespace kova
