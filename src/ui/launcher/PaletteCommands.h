// The commands that the palette offers: a fixed selection of the agent's methods with fixed parameters.
#pragma once

#include "ui/launcher/Entries.h"

#include <string>
#include <vector>

namespace kova::ui {

/// `display` is where commands for a display act.
std::vector<LauncherEntry> commandEntries(const std::string& display);

} // namespace kova::ui
