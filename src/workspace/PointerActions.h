// Drags of dividers and windows by the pointer.
#pragma once

#include "windowing/AccessibilityWindowService.h"
#include "workspace/Arrangement.h"
#include "workspace/FocusMode.h"
#include "workspace/FrameKeeper.h"
#include "workspace/LiveWindows.h"
#include "workspace/Outcome.h"
#include "workspace/PointerInteraction.h"
#include "workspace/RequestBatch.h"
#include "workspace/Snapshots.h"
#include "workspace/StatusMessages.h"
#include "workspace/TileAssignments.h"
#include "workspace/TileGeometry.h"
#include "workspace/TileKeeper.h"
#include "workspace/UndoSteps.h"
#include "workspace/WindowFinder.h"
#include "workspace/WindowPresenter.h"
#include "workspace/WorkspaceAccess.h"
#include "workspace/WorkspaceAction.h"
#include "workspace/WorkspaceServices.h"
#include "workspace/WorkspaceState.h"

#include <map>
#include <string>
#include <vector>

namespace kova {

struct WorkspaceParts;

class PointerActions {
  public:
    PointerActions(WorkspaceParts& parts, WorkspaceAccess& access, TileGeometry& geometry, const WindowFinder& finder,
                   WindowPresenter& presenter, TileKeeper& keeper, const Snapshots& snapshots, UndoSteps& steps,
                   Arrangement& arrangement);

    /// Every boundary that can be dragged. A display that a zoomed window fills has none.
    std::vector<DisplayLayoutDivider> dividers() const;
    Outcome beginDividerDrag(const DisplayLayoutDivider& target);
    void updateDividerDrag(const DisplayLayoutDivider& target, double translationPoints);
    void applyDividerDrag();
    void endDividerDrag(const DisplayLayoutDivider& target);
    void cancelDividerDrag();
    Outcome moveDivider(const DisplayLayoutDivider& target, double translationPoints);
    Outcome resetDivider(const DisplayLayoutDivider& target);
    Outcome pressWindow(const WindowID& windowID);
    void releaseWindow();
    Outcome beginWindowDrag(const WindowID& windowID, const CGRect& frameBefore);
    void updateWindowDrag(CGPoint pointer, action::WindowDragKind kind, action::DropMode mode);
    void endWindowDrag(CGPoint pointer, action::WindowDragKind kind, action::DropMode mode);
    void cancelWindowDrag();

  private:
    void writeInteractiveFrames(const DisplayID& displayID);
    void verifyFrames(const DisplayID& displayID, const std::map<WindowID, CGRect>& written);
    void dropWindow(const ManagedWindow& window, CGPoint pointer, action::DropMode mode, WorkspaceUndoSnapshot before);
    void returnZoomedWindow();
    void resizeTileLike(const ManagedWindow& window, const CGRect& frameBefore, WorkspaceUndoSnapshot before);

    const WorkspaceServices& services_;
    RequestBatch& requests_;
    AccessibilityWindowService& windowService_;
    WorkspaceState& state_;
    LiveWindows& liveWindows_;
    TileAssignments& assignments_;
    FocusMode& focusMode_;
    PointerInteraction& pointer_;
    FrameKeeper& frames_;
    StatusMessages& messages_;
    WorkspaceAccess& access_;
    TileGeometry& geometry_;
    const WindowFinder& finder_;
    WindowPresenter& presenter_;
    TileKeeper& keeper_;
    const Snapshots& snapshots_;
    UndoSteps& steps_;
    Arrangement& arrangement_;
};

} // namespace kova
