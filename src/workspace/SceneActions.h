// Captures scenes, compares them with the present state, and restores them.
#pragma once

#include "support/Identifiers.h"
#include "support/Lifetime.h"
#include "windowing/AccessibilityWindowService.h"
#include "workspace/ApplicationActions.h"
#include "workspace/AwaitedWindows.h"
#include "workspace/DocumentStore.h"
#include "workspace/LiveWindows.h"
#include "workspace/Outcome.h"
#include "workspace/PointerInteraction.h"
#include "workspace/RefreshCycle.h"
#include "workspace/SceneCapture.h"
#include "workspace/SceneDifferences.h"
#include "workspace/StatusMessages.h"
#include "workspace/TileAssignments.h"
#include "workspace/TileGeometry.h"
#include "workspace/TileKeeper.h"
#include "workspace/TileMemory.h"
#include "workspace/UndoSteps.h"
#include "workspace/WindowFinder.h"
#include "workspace/WindowPresenter.h"
#include "workspace/WorkspaceAccess.h"
#include "workspace/WorkspaceServices.h"
#include "workspace/WorkspaceState.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace kova {

struct WorkspaceParts;

class SceneActions {
  public:
    SceneActions(WorkspaceParts& parts, RefreshCycle& refreshCycle, WorkspaceAccess& access, TileGeometry& geometry,
                 const WindowFinder& finder, WindowPresenter& presenter, TileKeeper& keeper, DocumentStore& documents,
                 UndoSteps& steps, ApplicationActions& applications, std::function<void()> forgetPlaces);

    Outcome activateScene(const Uuid& id);
    void processPendingScenePlacements();
    Outcome captureScene(const std::optional<std::string>& name);
    /// Absent if there is no such scene; empty if opening it would change nothing.
    std::optional<std::vector<SceneDifference>> diffScene(const Uuid& id) const;

  private:
    void applyAppearanceAndLayouts(const WorkspaceScene& scene);
    std::size_t placeWindowsOf(const WorkspaceScene& scene);
    void launchForScene(const std::vector<BundleID>& bundleIDs);
    void launchedForScene(const LaunchableApplication& application, const LaunchResult& result);
    void carryOutRestored(const std::vector<RestoredPlacement>& placements, Transaction changes);
    void endRestoration(std::size_t unavailable);
    std::vector<CapturedPlacement> capturedPlacements() const;
    std::vector<WorkspaceSceneDisplay> capturedDisplays() const;

    const WorkspaceServices& services_;
    AccessibilityWindowService& windowService_;
    WorkspaceState& state_;
    LiveWindows& liveWindows_;
    TileAssignments& assignments_;
    TileMemory& tileMemory_;
    const PointerInteraction& pointer_;
    AwaitedWindows& awaited_;
    StatusMessages& messages_;
    RefreshCycle& refreshCycle_;
    WorkspaceAccess& access_;
    TileGeometry& geometry_;
    const WindowFinder& finder_;
    WindowPresenter& presenter_;
    TileKeeper& keeper_;
    DocumentStore& documents_;
    UndoSteps& steps_;
    ApplicationActions& applications_;
    std::function<void()> forgetPlaces_;
    Lifetime lifetime_;
};

} // namespace kova
