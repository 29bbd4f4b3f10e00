// Adds the methods that show and switch a setting of the system, for example whether KOVA starts at login.
#pragma once

#include "control/SystemSetting.h"

#include <optional>
#include <string>

namespace kova {

class MethodTable;

/// `name` is the first part of the methods' names. `setting` outlives the methods; it is absent if the desktop has no
/// such setting.
void addSettingMethods(MethodTable& methods, const std::string& name, const std::optional<SystemSetting>& setting);

} // namespace kova
