// Carries out commands for one window: the planned commands, focusing and moving in a direction, and cycling a stack.
#pragma once

#include "workspace/Arrangement.h"
#include "workspace/FloatingWindows.h"
#include "workspace/FocusMode.h"
#include "workspace/LiveWindows.h"
#include "workspace/Outcome.h"
#include "workspace/Snapshots.h"
#include "workspace/TileAssignments.h"
#include "workspace/TileGeometry.h"
#include "workspace/TileKeeper.h"
#include "workspace/UndoSteps.h"
#include "workspace/WindowCommand.h"
#include "workspace/WindowFinder.h"
#include "workspace/WindowPresenter.h"
#include "workspace/WorkspaceAccess.h"
#include "workspace/WorkspaceState.h"

#include <optional>
#include <string>
#include <variant>

namespace kova {

struct WorkspaceParts;

class WindowCommands {
  public:
    WindowCommands(WorkspaceParts& parts, WorkspaceAccess& access, TileGeometry& geometry, const WindowFinder& finder,
                   WindowPresenter& presenter, TileKeeper& keeper, const Snapshots& snapshots, UndoSteps& steps,
                   Arrangement& arrangement);

    /// The plan that the command would carry out now. A command ends focus mode, so the plan starts from the state
    /// before focus mode.
    std::variant<WindowPlan, WindowRefusal> planCommand(const WindowCommand& command) const;
    Outcome runCommand(const WindowCommand& command);
    /// Of the visible windows of the display, the one that was focused last. If none was focused, the first front
    /// window, else any visible window. Absent if the display shows no window.
    std::optional<WindowID> windowLastFocusedOn(const DisplayID& displayID) const;
    Outcome focusWindow(WorkspaceDirection direction, const std::optional<WindowID>& fromWindowID);
    Outcome moveWindow(WorkspaceDirection direction, const std::optional<WindowID>& windowID);
    Outcome cycleStack(const action::CycleStack& cycle);

  private:
    WindowCommandInput windowCommandInput() const;
    Outcome carryOutPlan(const WindowPlan& plan);
    static const WindowStep* lastPlacement(const WindowPlan& plan);
    void placeByCommand(const ManagedWindow& window, const TileTarget& target,
                        AccessibilityWindowService::BringToFront bringToFront);
    void floatByCommand(const ManagedWindow& window);

    WorkspaceState& state_;
    const LiveWindows& liveWindows_;
    TileAssignments& assignments_;
    const FocusMode& focusMode_;
    FloatingWindows& floating_;
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
