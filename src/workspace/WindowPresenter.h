// What is asked of single windows: frames, to be shown, hidden, minimized, focused.
#pragma once

#include "support/Lifetime.h"
#include "windowing/AccessibilityWindowService.h"
#include "workspace/FocusMode.h"
#include "workspace/FrameKeeper.h"
#include "workspace/LeftAlone.h"
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
    using Straying = FrameKeeper::Straying;

    WindowPresenter(WorkspaceParts& parts, RefreshCycle& refreshCycle, TileGeometry& geometry,
                    const WindowFinder& finder,
                    std::function<void(const std::string&, const CGRect&, const CGRect&)> minimumSizeObserved);

    /// Requests the frame with verification; without effect in full screen and where no display would show it. A window
    /// on another virtual desktop gets it when that is shown.
    void writeFrame(const ManagedWindow& window, const CGRect& frameForWindowService,
                    AccessibilityWindowService::BringToFront raise);
    void minimizeWindow(const ManagedWindow& window);
    void hideApplicationOf(const ManagedWindow& window);
    void unhideApplicationOf(const ManagedWindow& window);
    /// Shows the window. Windows of its application that wait in stacks stay hidden.
    void bringBack(const ManagedWindow& window);
    /// False when the window or its application is gone.
    bool focus(const ManagedWindow& window);
    void requestPresentation(const std::string& windowID, WindowPresentation presentation);
    /// Hides windows that lost their tile: the application where none of its windows stays visible, else the window.
    void presentDisplaced(const std::vector<std::string>& displacedWindowIDs);
    /// Requests the frames of windows that strayed from their tiles.
    void reapplyTileFrames(Straying straying = Straying::noticeable);
    /// Absent when the window may be moved.
    std::optional<LeftAlone> whyLeftAlone(const ManagedWindow& window) const;
    bool isLeftAlone(const ManagedWindow& window) const { return whyLeftAlone(window).has_value(); }
    /// Neither visible nor able to be shown by a request.
    bool isOffScreen(const ManagedWindow& window) const;
    /// Above other windows; the one that had the focus last comes out on top.
    void raiseRestored(const std::vector<std::string>& windowIDs);

  private:
    void moveDialogsAlong(const std::string& windowID, const CGRect& frameForWindowService);
    void reapplyWindow(const ManagedWindow& window, const CGRect& target, Straying straying);

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
    std::function<void(const std::string&, const CGRect&, const CGRect&)> minimumSizeObserved_;
    Lifetime lifetime_;
};

} // namespace kova
