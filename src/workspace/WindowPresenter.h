// Sends the requests that concern single windows: to place, show, hide, minimize, raise and focus them.
#pragma once

#include "support/Lifetime.h"
#include "windowing/AccessibilityWindowService.h"
#include "workspace/FloatingWindows.h"
#include "workspace/FocusMode.h"
#include "workspace/FrameKeeper.h"
#include "workspace/LeftAloneReason.h"
#include "workspace/LiveWindows.h"
#include "workspace/PointerInteraction.h"
#include "workspace/RefreshCycle.h"
#include "workspace/TileAssignments.h"
#include "workspace/TileGeometry.h"
#include "workspace/TileMemory.h"
#include "workspace/WindowFinder.h"
#include "workspace/WorkspaceServices.h"
#include "workspace/WorkspaceState.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace kova {

struct WorkspaceParts;

class WindowPresenter {
  public:
    using CorrectedDrift = FrameKeeper::CorrectedDrift;

    WindowPresenter(WorkspaceParts& parts, RefreshCycle& refreshCycle, TileGeometry& geometry,
                    const WindowFinder& finder,
                    std::function<void(const WindowID&, const CGRect&, const CGRect&)> minimumSizeObserved);

    /// Requests the frame, which is then verified. No-op for a full-screen window, and for a frame outside all
    /// displays. A window that is elsewhere or does not respond gets the frame as soon as it is shown and responds.
    void writeFrame(const ManagedWindow& window, const CGRect& frameForWindowService,
                    AccessibilityWindowService::BringToFront raise);
    void minimizeWindow(const ManagedWindow& window);
    /// Hides the application, with all its windows.
    void hideApplicationOf(const ManagedWindow& window);
    /// Shows all windows of the application that are not minimized.
    void unhideApplicationOf(const ManagedWindow& window);
    /// Shows the window. Stacked windows of the same application stay off the screen.
    void restore(const ManagedWindow& window);
    /// Shows and focuses the window. False if the window was closed or its application has ended.
    bool focus(const ManagedWindow& window);
    /// Records the requested state in the list of live windows. Does not send a request.
    void requestPresentation(const WindowID& windowID, WindowPresentation presentation);
    /// Takes windows that lost their tile off the screen: hides the application if none of its windows has to stay
    /// visible, else minimizes the window.
    void hideDisplaced(const std::vector<WindowID>& displacedWindowIDs);
    /// Requests the frames of windows that are off their tiles by more than the given drift.
    void reapplyTileFrames(CorrectedDrift correctedDrift);
    /// The reason why the window is left alone; absent if it may be moved.
    std::optional<LeftAloneReason> whyLeftAlone(const ManagedWindow& window) const;
    bool isLeftAlone(const ManagedWindow& window) const { return whyLeftAlone(window).has_value(); }
    /// True for a window that is not visible and that KOVA cannot show by a request.
    bool isOffScreen(const ManagedWindow& window) const;
    /// Raises the windows above all others. The window that was focused last is raised last.
    void raiseRestored(const std::vector<WindowID>& windowIDs);

  private:
    void moveDialogsAlong(const WindowID& windowID, const CGRect& frameForWindowService);
    void reapplyWindow(const ManagedWindow& window, const CGRect& target, CorrectedDrift correctedDrift);

    const WorkspaceServices& services_;
    AccessibilityWindowService& windowService_;
    WorkspaceState& state_;
    LiveWindows& liveWindows_;
    const TileAssignments& assignments_;
    TileMemory& tileMemory_;
    const FocusMode& focusMode_;
    const FloatingWindows& floating_;
    const PointerInteraction& pointer_;
    FrameKeeper& frames_;
    RefreshCycle& refreshCycle_;
    TileGeometry& geometry_;
    const WindowFinder& finder_;
    std::function<void(const WindowID&, const CGRect&, const CGRect&)> minimumSizeObserved_;
    Lifetime lifetime_;
};

} // namespace kova
