// The commands of the palette: every verb of the command line that needs nothing but a window, a tile or a display that
// is already known.
#pragma once

#include "ui/launcher/Entries.h"

#include <string>
#include <vector>

namespace kova::ui {

/// `display` is where commands for a display act.
std::vector<LauncherEntry> commandEntries(const std::string& display);

} // namespace kova::ui
