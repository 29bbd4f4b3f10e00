// Methods for the check for newer versions, by its entries of the menu: it exists where the menu has them.
#pragma once

#include "control/ControlHandling.h"
#include "control/MenuServing.h"
#include "support/JsonDecoding.h"

namespace kova {

/// `menu` is null where there is none; then, and where the program is updated by other means, all are refused.
ControlReply updatesStatus(const MenuServing* menu);
ControlReply checkForUpdates(MenuServing* menu);
enum class UpdateSwitch { checks, downloads };
/// Refused for downloads while nothing checks.
ControlReply switchUpdates(MenuServing* menu, UpdateSwitch which, const JsonCursor& parameters);

} // namespace kova
