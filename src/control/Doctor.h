// A look at everything that windows need in order to be arranged.
#pragma once

#include "control/ControlMethods.h"
#include "control/ShortcutMethods.h"

#include <nlohmann/json_fwd.hpp>

namespace kova {

nlohmann::json examine(const ControlContext& context, const ShortcutMethods& shortcuts);

} // namespace kova
