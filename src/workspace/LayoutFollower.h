// Moves windows to the tiles of the new layout after a display has changed its layout because of its size.
#pragma once

#include "windowing/AccessibilityWindowService.h"
#include "workspace/DisplayMemory.h"
#include "workspace/LiveWindows.h"
#include "workspace/TileAssignments.h"
#include "workspace/TileGeometry.h"
#include "workspace/TileMemory.h"
#include "workspace/WindowPresenter.h"
#include "workspace/WorkspaceState.h"

namespace kova {

struct WorkspaceParts;

class LayoutFollower {
  public:
    LayoutFollower(WorkspaceParts& parts, TileGeometry& geometry, WindowPresenter& presenter);

    /// Moves the windows of displays that show another layout than before. The caller commits, and so records the
    /// layouts that are shown now.
    void migrateChangedDisplays();
    void migrateFromMissingTiles();
    void presentReturned();

  private:
    AccessibilityWindowService& windowService_;
    WorkspaceState& state_;
    const LiveWindows& liveWindows_;
    TileAssignments& assignments_;
    TileMemory& tileMemory_;
    DisplayMemory& displays_;
    TileGeometry& geometry_;
    WindowPresenter& presenter_;
};

} // namespace kova
