// Adds the methods that open the launcher and the palette of the program that draws the overlay.
#pragma once

namespace kova {

class MethodTable;
class OverlayBroadcast;
class WorkspaceController;

/// `overlay` is null if the agent has no overlay.
void addLauncherMethods(MethodTable& methods, const WorkspaceController& controller, OverlayBroadcast* overlay);

} // namespace kova
