// Adds the methods of a setting of the system: whether KOVA starts at login, and whether the Dock hides itself.
#pragma once

#include "control/SystemSetting.h"

#include <optional>
#include <string>

namespace kova {

class MethodTable;

/// `name` is the first part of the methods' names; `setting` is absent where the desktop lacks it.
void addSettingMethods(MethodTable& methods, const std::string& name, const std::optional<SystemSetting>& setting);

} // namespace kova
