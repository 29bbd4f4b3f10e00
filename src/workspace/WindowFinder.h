// Finds a window or tile by the focus, the pointer, a direction, a stack or a reference.
#pragma once

#include "persistence/WorkspaceProductDocument.h"
#include "windowing/AccessibilityWindowService.h"
#include "workspace/LiveWindows.h"
#include "workspace/TileAssignments.h"
#include "workspace/TileGeometry.h"
#include "workspace/WorkspaceAction.h"
#include "workspace/WorkspaceServices.h"
#include "workspace/WorkspaceState.h"

#include <optional>
#include <set>
#include <string>
#include <vector>

namespace kova {

struct WorkspaceParts;

/// A window, and the tile from which an action starts, for example the search for the neighboring tile.
struct StartingPoint {
    ManagedWindow window;
    TileTarget target;
    DisplayID displayID;
};
struct CycledStack {
    TileTarget target;           // for a spanning front window, its anchor
    std::vector<WindowID> order; // the new order, front first
};
enum class TilesConsidered { all, occupied };

class WindowFinder {
  public:
    WindowFinder(WorkspaceParts& parts, TileGeometry& geometry);

    /// The window that has the focus. If a dialog has the focus, this is the window to which the dialog belongs.
    std::optional<WindowID> focusedWindowID() const;
    /// The live window with the id that `focusedWindowID` returns; null if there is none.
    const ManagedWindow* focusedWindow() const;
    /// The live window with the id or, without an id, the focused window. Null if there is no such live window.
    const ManagedWindow* windowOrFocused(const std::optional<WindowID>& windowID) const;
    /// The window with the id or, without an id, the focused window. Absent unless it is the front window of a tile on
    /// a connected display.
    std::optional<StartingPoint> startingPoint(const std::optional<WindowID>& windowID) const;
    /// The reason why `startingPoint` returns nothing; absent if it returns a window.
    std::optional<std::string> whyNoStartingPoint(const std::optional<WindowID>& windowID) const;
    /// The tile next to the window in that direction, on the same display; absent if there is none.
    std::optional<TileTarget> neighborOf(const StartingPoint& start, WorkspaceDirection direction,
                                         TilesConsidered considered) const;
    /// The stack in the order that the action would give it. Absent if the tile has no stacked window.
    std::optional<CycledStack> cycledStack(const action::CycleStack& cycle) const;
    /// The window that the action would bring to the front; absent if the tile has no stacked window.
    std::optional<WindowID> nextInStack(const action::CycleStack& cycle) const;
    /// The reason why `nextInStack` returns nothing.
    std::string whyNothingNext(const action::CycleStack& cycle) const;
    /// Like `startingPoint`, but also for a window that is not a front window: the tile is then the tile under the
    /// window's middle, else the nearest tile.
    std::optional<StartingPoint> zoomStartingPoint(const std::optional<WindowID>& windowID) const;
    /// The display of the focused window, else the display under the pointer, else the first display. Absent without
    /// displays.
    std::optional<DisplayID> currentDisplayID() const;
    /// The id of `TileGeometry::screenOfWindow`; absent if there is no such window or display.
    std::optional<DisplayID> displayIDOfWindow(const WindowID& windowID) const;
    /// The managed window under the point (screen space); absent if there is none.
    std::optional<WindowID> managedWindowUnder(CGPoint pointOnScreen) const;
    /// Reads the window's frame from the desktop (window-service space); absent if it cannot be read.
    std::optional<CGRect> currentFrame(const WindowID& windowID) const;
    /// The window to which the dialog belongs; null if `dialog` is not a dialog.
    const ManagedWindow* windowOfDialog(const ManagedWindow& dialog) const;
    /// The live window that matches the reference and is not among the excluded windows; absent if there is none.
    std::optional<ManagedWindow> findWindow(const WorkspaceWindowReference& reference,
                                            const std::set<WindowID>& excluded) const;
    /// The live windows that are not elsewhere. Scenes use only these.
    std::vector<ManagedWindow> windowsNotElsewhere() const;

  private:
    const WorkspaceServices& services_;
    const AccessibilityWindowService& windowService_;
    const WorkspaceState& state_;
    const LiveWindows& liveWindows_;
    const TileAssignments& assignments_;
    TileGeometry& geometry_;
};

} // namespace kova
