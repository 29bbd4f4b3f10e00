// Start at login and the hiding Dock, as settings of the control socket.
#pragma once

#include "control/SystemSetting.h"

namespace kova {

class DockAutoHideController;
class LaunchAtLoginController;

/// The controllers outlive their settings.
SystemSetting startAtLoginSetting(LaunchAtLoginController& controller);
SystemSetting dockAutoHideSetting(DockAutoHideController& controller);

} // namespace kova
