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

/// A window, and the tile from which actions on it start.
struct StartingPoint {
    ManagedWindow window;
    TileTarget target;
    DisplayID displayID;
};
struct CycledStack {
    TileTarget target;
    std::vector<WindowID> order; // the new order, front first
};
enum class TilesConsidered { all, occupied };

class WindowFinder {
  public:
    WindowFinder(WorkspaceParts& parts, TileGeometry& geometry);

    std::optional<WindowID> focusedWindowID() const;
    /// The live window that has the focus, itself or in one of its dialogs; null if none has.
    const ManagedWindow* focusedWindow() const;
    /// The named window, else the focused one; null when there is none.
    const ManagedWindow* windowOrFocused(const std::optional<WindowID>& windowID) const;
    std::optional<StartingPoint> startingPoint(const std::optional<WindowID>& windowID) const;
    /// Why no action can start at the window (default: the focused one); absent if one can.
    std::optional<std::string> whyNoStartingPoint(const std::optional<WindowID>& windowID) const;
    std::optional<TileTarget> neighborOf(const StartingPoint& start, WorkspaceDirection direction,
                                         TilesConsidered considered) const;
    std::optional<CycledStack> cycledStack(const action::CycleStack& cycle) const;
    /// The window that the action would bring to the front; absent if no other is stacked.
    std::optional<WindowID> nextInStack(const action::CycleStack& cycle) const;
    /// Why `cycle` would bring no other window to the front.
    std::string whyNothingNext(const action::CycleStack& cycle) const;
    std::optional<StartingPoint> zoomStartingPoint(const std::optional<WindowID>& windowID) const;
    /// The display of the focused window, else the one under the pointer, else the first; absent without displays.
    std::optional<DisplayID> currentDisplayID() const;
    /// The id of `TileGeometry::screenOfWindow`; absent if there is no such window or display.
    std::optional<DisplayID> displayIDOfWindow(const WindowID& windowID) const;
    /// The managed window under a point of screen space.
    std::optional<WindowID> managedWindowUnder(CGPoint pointOnScreen) const;
    /// The window's frame as it is now, in window-service space; absent when it cannot be read.
    std::optional<CGRect> currentFrame(const WindowID& windowID) const;
    /// The window to which the dialog belongs; null if `dialog` is not a dialog.
    const ManagedWindow* windowOfDialog(const ManagedWindow& dialog) const;
    /// The live window that matches the reference; absent if there is none except those excluded.
    std::optional<ManagedWindow> findWindow(const WorkspaceWindowReference& reference,
                                            const std::set<WindowID>& excluded) const;
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
