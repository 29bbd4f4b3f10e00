// Moves the windows of a display to the tiles of another layout when the display gets that layout because its size has
// changed.
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

    /// Moves the windows of displays whose layout has changed. The caller commits; the commit records the layouts that
    /// are shown now.
    void migrateChangedDisplays();
    void migrateFromMissingTiles();
    void presentReturnedWindows();

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
