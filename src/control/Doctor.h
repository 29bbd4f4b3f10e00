// Checks everything that arranging windows depends on.
#pragma once

#include "control/ControlMethods.h"
#include "control/ShortcutMethods.h"

#include <nlohmann/json_fwd.hpp>

namespace kova {

nlohmann::json examine(const ControlContext& context, const ShortcutMethods& shortcuts);

} // namespace kova
