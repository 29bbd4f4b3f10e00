// The actions that choose the layout of a display, reset its weights or set the tile inset.
#pragma once

#include "workspace/DisplayMemory.h"
#include "workspace/LayoutFollower.h"
#include "workspace/Outcome.h"
#include "workspace/TileAssignments.h"
#include "workspace/TileGeometry.h"
#include "workspace/TileKeeper.h"
#include "workspace/TileMemory.h"
#include "workspace/UndoSteps.h"
#include "workspace/WindowFinder.h"
#include "workspace/WorkspaceAccess.h"
#include "workspace/WorkspaceAction.h"
#include "workspace/WorkspaceState.h"

#include <optional>
#include <string>

namespace kova {

struct WorkspaceParts;

class LayoutChoice {
  public:
    LayoutChoice(WorkspaceParts& parts, WorkspaceAccess& access, TileGeometry& geometry, const WindowFinder& finder,
                 TileKeeper& keeper, LayoutFollower& follower, UndoSteps& steps);

    Outcome selectLayout(const DisplayID& displayID, const DisplayLayoutSelection& selection);
    Outcome cycleLayout(const action::CycleLayout& cycle);
    Outcome resetLayoutSizes(const std::optional<DisplayID>& displayID);
    Outcome setTileInset(double points);

  private:
    WorkspaceState& state_;
    TileAssignments& assignments_;
    TileMemory& tileMemory_;
    DisplayMemory& displays_;
    WorkspaceAccess& access_;
    TileGeometry& geometry_;
    const WindowFinder& finder_;
    TileKeeper& keeper_;
    LayoutFollower& follower_;
    UndoSteps& steps_;
};

} // namespace kova
