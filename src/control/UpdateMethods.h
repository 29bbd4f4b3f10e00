// Methods for the check for newer versions. They use its entries of the menu and are refused if the menu lacks these.
#pragma once

#include "control/ControlHandling.h"
#include "control/MenuServing.h"
#include "support/JsonDecoding.h"

namespace kova {

/// `menu` is null where there is none; then all methods are refused.
ControlReply updatesStatus(const MenuServing* menu);
ControlReply checkForUpdates(MenuServing* menu);
enum class UpdateSwitch { checks, downloads };
/// Refused for downloads while automatic checks are off.
ControlReply switchUpdates(MenuServing* menu, UpdateSwitch which, const JsonCursor& parameters);

} // namespace kova
