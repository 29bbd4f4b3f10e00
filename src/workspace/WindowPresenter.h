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

    void writeFrame(const ManagedWindow& window, const CGRect& frameForWindowService,
                    AccessibilityWindowService::BringToFront raise);
    void minimizeWindow(const ManagedWindow& window);
    void hideApplicationOf(const ManagedWindow& window);
    void unhideApplicationOf(const ManagedWindow& window);
    void bringBack(const ManagedWindow& window);
    bool focus(const ManagedWindow& window);
    void requestPresentation(const std::string& windowID, WindowPresentation presentation);
    void presentDisplaced(const std::vector<std::string>& displacedWindowIDs);
    void reapplyTileFrames(Straying straying = Straying::noticeable);
    std::optional<LeftAlone> whyLeftAlone(const ManagedWindow& window) const;
    bool isLeftAlone(const ManagedWindow& window) const { return whyLeftAlone(window).has_value(); }
    bool isOffScreen(const ManagedWindow& window) const;
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
