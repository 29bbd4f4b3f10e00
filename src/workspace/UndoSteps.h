// Adds undo steps, ends drags, and enters and leaves focus mode, which stores a snapshot. The undo command itself is
// `WorkspaceController::undoLastAction`.
#pragma once

#include "windowing/AccessibilityWindowService.h"
#include "workspace/FocusMode.h"
#include "workspace/Outcome.h"
#include "workspace/PointerInteraction.h"
#include "workspace/RefreshCycle.h"
#include "workspace/RequestBatch.h"
#include "workspace/SessionResumption.h"
#include "workspace/Snapshots.h"
#include "workspace/TileGeometry.h"
#include "workspace/TileKeeper.h"
#include "workspace/UndoHistory.h"
#include "workspace/WindowFinder.h"
#include "workspace/WindowPresenter.h"
#include "workspace/WorkspaceAccess.h"
#include "workspace/WorkspaceServices.h"
#include "workspace/WorkspaceState.h"

#include <functional>
#include <optional>

namespace kova {

struct WorkspaceParts;

class UndoSteps {
  public:
    UndoSteps(WorkspaceParts& parts, RefreshCycle& refreshCycle, WorkspaceAccess& access, TileGeometry& geometry,
              const WindowFinder& finder, WindowPresenter& presenter, TileKeeper& keeper, Snapshots& snapshots);

    /// Adds an undo step with the snapshot. Without a snapshot, ends drags and focus mode first, and then takes one.
    void pushUndoSnapshot(UndoLabel label, std::optional<WorkspaceUndoSnapshot> snapshot = std::nullopt);
    /// Restores the snapshot that was taken when focus mode began. False if focus mode is off.
    bool leaveFocusMode();
    /// Like `leaveFocusMode`, but a no-op during a suspension.
    void closeFocusMode();
    Outcome toggleFocusMode(const std::optional<WindowID>& windowID);
    /// Ends drags without placing windows. The weights of an unfinished divider drag are dropped.
    void abandonDrags();
    /// Ends drags and moves the windows back to the tiles that they had before the drag.
    void endDrags();
    /// Ends focus mode, runs `change` and flushes. For changes that an arrangement, a launch or a scene makes later.
    void changeOutsideFocusMode(const std::function<void()>& change);
    /// Begins focus mode as the stored session describes it. No-op if its window or its display is missing.
    void resumeFocusMode(const WorkspaceSessionZoom& zoom, const ResumedWindows& resumed);

  private:
    Outcome enterFocusMode(const std::optional<WindowID>& windowID);

    const WorkspaceServices& services_;
    RequestBatch& requests_;
    WorkspaceState& state_;
    UndoHistory& undo_;
    FocusMode& focusMode_;
    PointerInteraction& pointer_;
    RefreshCycle& refreshCycle_;
    WorkspaceAccess& access_;
    TileGeometry& geometry_;
    const WindowFinder& finder_;
    WindowPresenter& presenter_;
    TileKeeper& keeper_;
    Snapshots& snapshots_;
};

} // namespace kova
