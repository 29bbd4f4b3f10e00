// Restores the windows of a scene to their tiles.
#pragma once

#include "layout/LayoutSolver.h"
#include "persistence/WorkspaceProductDocument.h"
#include "support/Identifiers.h"
#include "support/MainQueue.h"
#include "workspace/SceneReport.h"
#include "workspace/TileAssignments.h"

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace kova {

/// A placement whose window has not appeared yet.
struct PendingSceneWindowPlacement {
    static constexpr Seconds kLifetime{25};

    WorkspaceWindowReference window;
    DisplayID displayID;
    SlotID slotID;
    std::int64_t stackIndex = 0;
    std::optional<std::vector<SlotID>> claimedSlotIDs;
    std::optional<bool> isActive;
    Seconds expiresAt{0}; // uptime
};

/// The awaited windows of the opened scene. Idle if nothing is pending.
struct SceneRestoration {
    std::vector<PendingSceneWindowPlacement> pending; // in the order in which they were deferred
    std::set<BundleID> launchedBundleIDs;             // each application is launched at most once
    std::map<WindowID, std::int64_t> stackIndexByID;  // of the restored windows
    std::set<WindowID> movedByUser; // since the scene was opened; the scene no longer places these windows
    SceneReport report;
    std::uint64_t undoNumber = 0; // of the entry in the undo history that reverts the scene
};

/// Limits a tile inset to the valid range, 0 to 100 points.
double clampedTileInset(double points);

/// The slots of the layout that a placement uses, `slotID` first. Claimed slots are used only if they and `slotID` form
/// a rectangle that no other slot overlaps. Empty if the layout lacks `slotID`; such a placement is skipped.
std::vector<SlotID> slotsTaken(const std::vector<TileSlot>& slots, const SlotID& slotID,
                               const std::optional<std::vector<SlotID>>& claimedSlotIDs);

/// The placements in the order of restoration: by display, slot and place in the stack.
std::vector<WorkspaceScenePlacement> inRestoringOrder(std::vector<WorkspaceScenePlacement> placements);

/// Whether the placement's window is a front window. If `isActive` is absent, the first window of a stack is in front.
bool frontsItsTile(std::int64_t stackIndex, std::optional<bool> isActive);

/// A live window and its tiles in the scene.
struct RestoredPlacement {
    WindowID windowID;
    std::vector<TileTarget> targets; // the anchor first; more than one for a span
    std::int64_t stackIndex = 0;
    bool isFront = true;
};

/// Adds the windows, which have no tile yet, to the assignments. A stacked window whose tile is empty is in front
/// until the front window of the scene appears. Stacks are ordered by stack index; windows without a stack index
/// are last.
TileAssignments withRestored(TileAssignments before, const std::vector<RestoredPlacement>& placements,
                             const std::map<WindowID, std::int64_t>& stackIndexByID);

} // namespace kova
