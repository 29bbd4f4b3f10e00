// Observes everything that the settings window shows.
#pragma once

#include "control/ControlMethods.h"
#include "support/Published.h"

#include <functional>
#include <vector>

namespace kova {

/// Calls `changed` when values that the settings window shows may have changed, other than by a request.
std::vector<Subscription> observeSettings(const ControlContext& context, const std::function<void()>& changed);

} // namespace kova
