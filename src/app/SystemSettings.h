// The shell's two settings of the system, as clients see them.
#pragma once

#include "control/SystemSetting.h"

namespace kova {

class DockAutoHideController;
class LaunchAtLoginController;

/// Each outlives the setting.
SystemSetting startAtLoginSetting(LaunchAtLoginController& controller);
SystemSetting dockAutoHideSetting(DockAutoHideController& controller);

} // namespace kova
