// The result of the method “status”, which `kova status` shows.
#pragma once

#include "control/ControlMethods.h"
#include "control/ShortcutMethods.h"

#include <nlohmann/json_fwd.hpp>

namespace kova {

nlohmann::json agentStatus(const ControlContext& context, const ShortcutMethods& shortcuts);

} // namespace kova
