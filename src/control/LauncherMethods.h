// Opening the launcher and the palette of the program that draws the overlay.
#pragma once

#include "control/ControlHandling.h"
#include "support/JsonDecoding.h"
#include "workspace/WorkspaceController.h"

namespace kova {

class OverlayBroadcast;

/// For the tile that the parameters name by "tile" and "display"; else, on the current display, the
/// launcher for the first empty tile, the palette for that of the focused window, each then for the other. `overlay` is
/// null where nothing can be shown.
ControlReply showLauncher(OverlayBroadcast* overlay, const WorkspaceController& controller,
                          const JsonCursor& parameters);
ControlReply showPalette(OverlayBroadcast* overlay, const WorkspaceController& controller,
                         const JsonCursor& parameters);

} // namespace kova
