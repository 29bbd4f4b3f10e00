// What can change the sections of the settings topic.
#pragma once

#include "control/ControlMethods.h"
#include "support/Published.h"

#include <functional>
#include <vector>

namespace kova {

/// Calls back when what the settings window shows may have changed by other means than a request.
std::vector<Subscription> observeSettings(const ControlContext& context, const std::function<void()>& changed);

} // namespace kova
