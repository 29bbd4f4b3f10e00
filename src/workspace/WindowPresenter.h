// Sends requests for single windows: frames, show, hide, minimize, focus.
#pragma once

#include "support/Lifetime.h"
#include "windowing/AccessibilityWindowService.h"
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

    /// Requests the frame with verification. No-op for a full-screen window, and for a frame outside all displays. A
    /// window on another Space gets the frame when that Space is shown.
    void writeFrame(const ManagedWindow& window, const CGRect& frameForWindowService,
                    AccessibilityWindowService::BringToFront raise);
    void minimizeWindow(const ManagedWindow& window);
    void hideApplicationOf(const ManagedWindow& window);
    void unhideApplicationOf(const ManagedWindow& window);
    /// Shows the window. Stacked windows of its application stay hidden.
    void restore(const ManagedWindow& window);
    /// False if the window was closed or its application has ended.
    bool focus(const ManagedWindow& window);
    void requestPresentation(const WindowID& windowID, WindowPresentation presentation);
    /// Hides windows that lost their tile: the application if none of its windows stays in a tile, else the window.
    void presentDisplaced(const std::vector<WindowID>& displacedWindowIDs);
    /// Requests the frames of windows that are off their tiles.
    void reapplyTileFrames(CorrectedDrift correctedDrift);
    /// Absent when the window may be moved.
    std::optional<LeftAloneReason> whyLeftAlone(const ManagedWindow& window) const;
    bool isLeftAlone(const ManagedWindow& window) const { return whyLeftAlone(window).has_value(); }
    /// True for a window that is not visible and that no request of KOVA can show.
    bool isOffScreen(const ManagedWindow& window) const;
    /// Raises the windows above others; the one focused last is raised last.
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
    const PointerInteraction& pointer_;
    FrameKeeper& frames_;
    RefreshCycle& refreshCycle_;
    TileGeometry& geometry_;
    const WindowFinder& finder_;
    std::function<void(const WindowID&, const CGRect&, const CGRect&)> minimumSizeObserved_;
    Lifetime lifetime_;
};

} // namespace kova
