// Methods for settings of the system: whether KOVA starts at login, and whether the Dock hides itself.
#pragma once

#include "control/ControlHandling.h"
#include "control/SystemSetting.h"

#include <optional>

namespace kova {

ControlReply settingStatus(const std::optional<SystemSetting>& setting);
ControlReply switchSetting(const std::optional<SystemSetting>& setting, bool isOn);

} // namespace kova
