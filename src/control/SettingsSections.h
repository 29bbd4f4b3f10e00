// Observes the values that the sections of the settings topic depend on.
#pragma once

#include "control/ControlMethods.h"
#include "support/Published.h"

#include <functional>
#include <vector>

namespace kova {

/// Calls back when contents of the settings window may have changed other than by a request.
std::vector<Subscription> observeSettings(const ControlContext& context, const std::function<void()>& changed);

} // namespace kova
