// Requested against actual frames: what keeps a window where it is, and repairs.
#pragma once

#include "windowing/AccessibilityWindowService.h"
#include "workspace/Arrangement.h"
#include "workspace/AwaitedWindows.h"
#include "workspace/DisplayMemory.h"
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
#include "workspace/WorkspaceState.h"

#include <string>
#include <vector>

namespace kova {

struct WorkspaceParts;

class PlacementReport {
  public:
    PlacementReport(WorkspaceParts& parts, WorkspaceAccess& access, TileGeometry& geometry, WindowPresenter& presenter,
                    Arrangement& arrangement);

    /// Compares the frames of all windows in front of tiles with what was requested.
    std::vector<PlacementFinding> verifyPlacements() const;
    Outcome repairPlacements();
    /// What keeps the window where it is, in sentences; empty when nothing does.
    std::vector<std::string> whyItStays(const ManagedWindow& window) const;

  private:
    AccessibilityWindowService& windowService_;
    WorkspaceState& state_;
    LiveWindows& liveWindows_;
    TileAssignments& assignments_;
    DisplayMemory& displays_;
    PointerInteraction& pointer_;
    FrameKeeper& frames_;
    AwaitedWindows& awaited_;
    WorkspaceAccess& access_;
    TileGeometry& geometry_;
    WindowPresenter& presenter_;
    Arrangement& arrangement_;
};

} // namespace kova
