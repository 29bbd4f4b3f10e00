// Arranges the windows of all displays: makes a plan and carries it out. Windows that are minimized or hidden are only
// shown in the first step. They get their frames in a second step, because showing them takes time.
#pragma once

#include "support/Lifetime.h"
#include "windowing/AccessibilityWindowService.h"
#include "workspace/ArrangementMemory.h"
#include "workspace/DisplayMemory.h"
#include "workspace/FloatingWindows.h"
#include "workspace/FocusMode.h"
#include "workspace/FrameKeeper.h"
#include "workspace/LiveWindows.h"
#include "workspace/Outcome.h"
#include "workspace/PointerInteraction.h"
#include "workspace/Snapshots.h"
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

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kova {

struct WorkspaceParts;

inline constexpr std::string_view kNothingToArrange = "There is no window to arrange";

class Arrangement {
  public:
    Arrangement(WorkspaceParts& parts, WorkspaceAccess& access, TileGeometry& geometry, const WindowFinder& finder,
                WindowPresenter& presenter, TileKeeper& keeper, const Snapshots& snapshots, UndoSteps& steps);

    Outcome arrange();
    /// The message for the user if the window manager places windows itself; otherwise absent. Such a window manager is
    /// recognized by its name, or by the requests that windows refused.
    std::optional<std::string> whyWindowsStay() const;
    /// If false, `arrange` refuses.
    bool hasWindowToArrange() const;
    /// The plan that `arrange` would carry out now.
    ArrangementPlan planArrangement() const;
    /// Learns that the user has put the window into the tile.
    void learnPlacementByUser(const ManagedWindow& window, const TileTarget& target);
    /// Schedules the arrangement after the agent's start, if it is due and switched on. `isPermissionNew` is true if
    /// the permission was granted just now.
    void scheduleStartupArrangement(bool isPermissionNew);
    bool isExcludedByRules(const ManagedWindow& window) const;

  private:
    std::optional<ArrangementCandidate> candidateFor(const ManagedWindow& window,
                                                     const TileAssignments& assignments) const;
    ArrangementInput arrangementInput(const std::vector<ManagedWindow>& windows,
                                      const TileAssignments& assignments) const;
    void arrangeWindows();
    void carryOutArrangement(const ArrangementPlan& plan);
    void showExcludedFromStacks(const TileAssignments& before);
    void presentPlacement(const AutoArrangePlacement& placement, const std::map<WindowID, CGRect>& frames);
    void carryOutDeferred(std::int64_t generation);
    void learnFrom(const ArrangementPlan& plan);
    TileAssignments assignmentsOnDisconnectedDisplays() const;
    std::optional<RuleTile> tileOfRule(const ManagedWindow& window) const;

    const WorkspaceServices& services_;
    AccessibilityWindowService& windowService_;
    WorkspaceState& state_;
    LiveWindows& liveWindows_;
    TileAssignments& assignments_;
    TileMemory& tileMemory_;
    DisplayMemory& displays_;
    const FocusMode& focusMode_;
    const FloatingWindows& floating_;
    const PointerInteraction& pointer_;
    FrameKeeper& frames_;
    ArrangementMemory& arrangementMemory_;
    WorkspaceAccess& access_;
    TileGeometry& geometry_;
    const WindowFinder& finder_;
    WindowPresenter& presenter_;
    TileKeeper& keeper_;
    const Snapshots& snapshots_;
    UndoSteps& steps_;
    Lifetime lifetime_;
};

} // namespace kova
