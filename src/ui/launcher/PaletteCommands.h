// The commands of the palette: methods of the agent whose parameters are fixed, or a window, tile or display that is
// known already.
#pragma once

#include "ui/launcher/Entries.h"

#include <string>
#include <vector>

namespace kova::ui {

/// `display` is where commands for a display act.
std::vector<LauncherEntry> commandEntries(const std::string& display);

} // namespace kova::ui
