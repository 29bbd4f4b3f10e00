// The commands of the palette: every verb of the command line that changes something. What a verb needs beyond the
// focused window and the palette's tile is a question.
#pragma once

#include "ui/launcher/Entries.h"

#include <string>
#include <vector>

namespace kova::ui {

/// The method acts on the focused window unless its parameters name a window.
bool actsOnFocusedWindow(const std::string& method);

/// `display` is where commands for a display act.
std::vector<LauncherEntry> commandEntries(const std::string& display);

} // namespace kova::ui
