// Observes the values that the settings window shows.
#pragma once

#include "control/ControlMethods.h"
#include "support/Published.h"

#include <functional>
#include <vector>

namespace kova {

/// Calls `changed` when a value that the settings window shows may have changed. Values that change only by requests
/// are not observed.
std::vector<Subscription> observeSettings(const ControlContext& context, const std::function<void()>& changed);

} // namespace kova
