// Methods that open the launcher and the palette of the program that draws the overlay.
#pragma once

#include "control/ControlHandling.h"
#include "support/JsonDecoding.h"
#include "workspace/WorkspaceController.h"

namespace kova {

class OverlayBroadcast;

/// Opens for the tile that the parameters name by "tile" and "display". Without "tile" the launcher prefers the first
/// empty tile of the display, then the tile of the focused window; the palette prefers them in the reverse order.
/// `overlay` is null if the agent has no overlay.
ControlReply showLauncher(OverlayBroadcast* overlay, const WorkspaceController& controller,
                          const JsonCursor& parameters);
ControlReply showPalette(OverlayBroadcast* overlay, const WorkspaceController& controller,
                         const JsonCursor& parameters);

} // namespace kova
