// Launches applications into tiles, and ends applications.
#pragma once

#include "support/Lifetime.h"
#include "windowing/AccessibilityWindowService.h"
#include "workspace/ArrangementMemory.h"
#include "workspace/AwaitedWindows.h"
#include "workspace/FloatingWindows.h"
#include "workspace/FocusMode.h"
#include "workspace/FrameKeeper.h"
#include "workspace/LiveWindows.h"
#include "workspace/Outcome.h"
#include "workspace/PointerInteraction.h"
#include "workspace/RefreshCycle.h"
#include "workspace/StatusMessages.h"
#include "workspace/TileAssignments.h"
#include "workspace/TileGeometry.h"
#include "workspace/TileKeeper.h"
#include "workspace/UndoHistory.h"
#include "workspace/UndoSteps.h"
#include "workspace/WindowPresenter.h"
#include "workspace/WorkspaceAccess.h"
#include "workspace/WorkspaceAction.h"
#include "workspace/WorkspaceServices.h"
#include "workspace/WorkspaceState.h"

#include <optional>
#include <string>
#include <vector>

namespace kova {

struct WorkspaceParts;

class ApplicationActions {
  public:
    ApplicationActions(WorkspaceParts& parts, RefreshCycle& refreshCycle, WorkspaceAccess& access,
                       TileGeometry& geometry, WindowPresenter& presenter, TileKeeper& keeper, UndoSteps& steps);

    /// The applications that menus list, sorted by name.
    std::vector<LaunchableApplication> launchableApplications() const;
    /// Any installed application; absent if none has the identifier.
    std::optional<LaunchableApplication> launchableApplication(const BundleID& bundleIdentifier) const;
    Outcome launchApplication(const action::LaunchApplication& launch);
    void noteStarted(const LaunchableApplication& application, const LaunchResult& result);
    void processPendingApplicationPlacements();
    Outcome quitApplication(const WindowID& windowID);
    Outcome forceQuitApplication(const WindowID& windowID);
    /// The applications that "force quit all" would end, sorted by name.
    std::vector<RunningApplication> regularApplicationsToForceQuit() const;
    void forceQuitAllApplications();
    Outcome forceQuit(const std::vector<RunningApplication>& confirmed);
    Outcome forgetApplication(const std::string& name);

  private:
    void applicationLaunched(const TileTarget& tile, const std::string& identifier, const LaunchResult& result);
    const ManagedWindow* windowLaunchedFor(const PendingApplicationPlacement& placement) const;
    Outcome endApplicationOf(const WindowID& windowID, const std::string& message,
                             const std::function<std::optional<std::string>(pid_t)>& end);

    const WorkspaceServices& services_;
    AccessibilityWindowService& windowService_;
    WorkspaceState& state_;
    const LiveWindows& liveWindows_;
    const TileAssignments& assignments_;
    UndoHistory& undo_;
    FocusMode& focusMode_;
    const FloatingWindows& floating_;
    const PointerInteraction& pointer_;
    FrameKeeper& frames_;
    AwaitedWindows& awaited_;
    ArrangementMemory& arrangementMemory_;
    StatusMessages& messages_;
    RefreshCycle& refreshCycle_;
    WorkspaceAccess& access_;
    TileGeometry& geometry_;
    WindowPresenter& presenter_;
    TileKeeper& keeper_;
    UndoSteps& steps_;
    Lifetime lifetime_;
};

} // namespace kova
