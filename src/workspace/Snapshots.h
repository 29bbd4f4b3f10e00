// Takes snapshots of the workspace and restores them: tiles, frames, hidden and minimized windows, the profile and what
// was learned.
#pragma once

#include "windowing/AccessibilityWindowService.h"
#include "workspace/ArrangementMemory.h"
#include "workspace/DisplayMemory.h"
#include "workspace/DocumentStore.h"
#include "workspace/FloatingWindows.h"
#include "workspace/LayoutFollower.h"
#include "workspace/LiveWindows.h"
#include "workspace/RefreshCycle.h"
#include "workspace/TileAssignments.h"
#include "workspace/TileGeometry.h"
#include "workspace/TileMemory.h"
#include "workspace/UndoHistory.h"
#include "workspace/WindowPresenter.h"
#include "workspace/WorkspaceServices.h"
#include "workspace/WorkspaceState.h"

#include <vector>

namespace kova {

struct WorkspaceParts;

class Snapshots {
  public:
    Snapshots(WorkspaceParts& parts, RefreshCycle& refreshCycle, TileGeometry& geometry, WindowPresenter& presenter,
              DocumentStore& documents, LayoutFollower& follower);

    WorkspaceUndoSnapshot capture() const;
    /// Restores the snapshot without a commit; the caller commits.
    void restore(const WorkspaceUndoSnapshot& snapshot);
    /// Puts the present theme, accent color and active scene into the snapshot. Call before the end of focus mode is
    /// restored, since they can be chosen during focus mode.
    void keepAppearance(WorkspaceUndoSnapshot& snapshot) const;
    /// The live windows in the state that restoring the snapshot will give them.
    std::vector<ManagedWindow> windowsAsIn(const WorkspaceUndoSnapshot& snapshot) const;

  private:
    void restoreWindow(const ManagedWindow& window, const WorkspaceUndoSnapshot& snapshot);
    void hideAsIn(const WorkspaceUndoSnapshot& snapshot);

    const WorkspaceServices& services_;
    AccessibilityWindowService& windowService_;
    WorkspaceState& state_;
    LiveWindows& liveWindows_;
    TileAssignments& assignments_;
    TileMemory& tileMemory_;
    DisplayMemory& displays_;
    FloatingWindows& floating_;
    ArrangementMemory& arrangementMemory_;
    RefreshCycle& refreshCycle_;
    TileGeometry& geometry_;
    WindowPresenter& presenter_;
    DocumentStore& documents_;
    LayoutFollower& follower_;
};

} // namespace kova
