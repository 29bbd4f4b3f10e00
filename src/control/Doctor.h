// Checks whether KOVA can manage the windows of the session.
#pragma once

#include "control/ControlMethods.h"
#include "control/ShortcutMethods.h"

#include <nlohmann/json_fwd.hpp>

#include <optional>
#include <string>

namespace kova {

/// The reason why KOVA can manage only some of the session's windows; absent if it can manage all.
std::optional<std::string> limitationOf(const ControlContext& context);
/// The result of the method “doctor”: every check with its verdict.
nlohmann::json examine(const ControlContext& context, const ShortcutMethods& shortcuts);

} // namespace kova
