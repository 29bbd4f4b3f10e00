// Checks everything that arranging windows depends on.
#pragma once

#include "control/ControlMethods.h"
#include "control/ShortcutMethods.h"

#include <nlohmann/json_fwd.hpp>

#include <optional>
#include <string>

namespace kova {

/// Why only some of the session's windows can be managed; absent when all can.
std::optional<std::string> limitationOf(const ControlContext& context);
nlohmann::json examine(const ControlContext& context, const ShortcutMethods& shortcuts);

} // namespace kova
