// Compares requested with actual frames, says why a window is not moved, and repairs drift.
#pragma once

#include "support/Lifetime.h"
#include "windowing/AccessibilityWindowService.h"
#include "workspace/Arrangement.h"
#include "workspace/AwaitedWindows.h"
#include "workspace/DisplayMemory.h"
#include "workspace/FloatingWindows.h"
#include "workspace/FrameKeeper.h"
#include "workspace/LiveWindows.h"
#include "workspace/Outcome.h"
#include "workspace/PointerInteraction.h"
#include "workspace/TileAssignments.h"
#include "workspace/TileGeometry.h"
#include "workspace/WindowPresenter.h"
#include "workspace/WindowStay.h"
#include "workspace/WorkspaceAccess.h"
#include "workspace/WorkspaceRecords.h"
#include "workspace/WorkspaceServices.h"
#include "workspace/WorkspaceState.h"

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace kova {

struct WorkspaceParts;

class PlacementReport {
  public:
    PlacementReport(WorkspaceParts& parts, WorkspaceAccess& access, TileGeometry& geometry, WindowPresenter& presenter,
                    Arrangement& arrangement);

    /// Reads the frames of all front windows on the polling queue, then calls `read` on the main queue. During `read`
    /// and the work that it posts, `verifyPlacements` uses these frames instead of those of the last poll.
    void readFrames(std::function<void()> read);
    /// Compares the frames of all front windows with the requested ones.
    std::vector<PlacementFinding> verifyPlacements() const;
    Outcome repairPlacements();
    /// The reasons why the window is not moved, one sentence each; empty if it may be moved.
    std::vector<std::string> whyItStays(const ManagedWindow& window) const;

  private:
    using Frames = std::map<WindowID, std::optional<CGRect>>; // window-service space, by window id

    const WorkspaceServices& services_;
    std::shared_ptr<AccessibilityWindowService> sharedService_; // for the polling queue
    AccessibilityWindowService& windowService_;
    WorkspaceState& state_;
    const LiveWindows& liveWindows_;
    const TileAssignments& assignments_;
    const DisplayMemory& displays_;
    const FloatingWindows& floating_;
    const PointerInteraction& pointer_;
    FrameKeeper& frames_;
    const AwaitedWindows& awaited_;
    WorkspaceAccess& access_;
    TileGeometry& geometry_;
    WindowPresenter& presenter_;
    Arrangement& arrangement_;
    Frames framesRead_;
    Lifetime lifetime_;
};

} // namespace kova
