// The commands of the palette: every command of the command line that changes something, except those that
// docs/control-schema.json marks with `notInPalette`. Some commands act on the window that was focused before the
// palette opened, or on the display of the palette's tile. The palette asks for all other arguments.
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
