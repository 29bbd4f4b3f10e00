// The commands of the palette: every verb of the command line that changes something. A verb's other arguments than the
// focused window and the palette's tile become questions.
#pragma once

#include "ui/launcher/Entries.h"

#include <string>
#include <vector>

namespace kova::ui {

/// Whether the method acts on the focused window unless its parameters name a window.
bool actsOnFocusedWindow(const std::string& method);

/// `display` is the id of the display on which commands for a display act.
std::vector<LauncherEntry> commandEntries(const std::string& display);

} // namespace kova::ui
