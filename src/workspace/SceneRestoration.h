// Windows on their way back to the places that a scene remembers.
#pragma once

#include "layout/LayoutSolver.h"
#include "persistence/WorkspaceProductDocument.h"
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
    std::string displayID;
    std::string slotID;
    std::int64_t stackIndex = 0;
    std::optional<std::vector<std::string>> claimedSlotIDs;
    std::optional<bool> isActive;
    Seconds expiresAt{0}; // uptime
};

/// What a scene that was opened still waits for. Idle when nothing is pending.
struct SceneRestoration {
    std::vector<PendingSceneWindowPlacement> pending;   // in the order in which they were deferred
    std::set<std::string> launchedBundleIDs;            // each application is launched at most once
    std::map<std::string, std::int64_t> stackIndexByID; // of the windows that were put back
    std::set<std::string> movedByUser; // meanwhile: floated or placed, so no longer the scene's to place
    SceneReport report;
};

/// A tile inset as it takes effect, in points: 0 to 100.
double clampedTileInset(double points);

/// The slots that a placement takes of a layout's, its own first: those that it claims only when the layout's together
/// cover a rectangle without any other. Empty when the layout lacks its own; such a placement is skipped.
std::vector<std::string> slotsTaken(const std::vector<TileSlot>& slots, const std::string& slotID,
                                    const std::optional<std::vector<std::string>>& claimedSlotIDs);

/// The placements as they are put back: by display, slot and place in the stack.
std::vector<WorkspaceScenePlacement> inRestoringOrder(std::vector<WorkspaceScenePlacement> placements);

/// Whether the window of the placement fronts its tile; without a word about it, the first of the stack does.
bool frontsItsTile(std::int64_t stackIndex, std::optional<bool> isActive);

/// A live window and the place that is its.
struct RestoredPlacement {
    std::string windowID;
    std::vector<std::string> targetIDs; // the anchor first; more than one for a span
    std::int64_t stackIndex = 0;
    bool isFront = true;
};

/// The assignments with the windows, which were in no tile, put back. One that is to wait behind another fronts its
/// tile until that one comes, so that no tile stays empty for a window that may never appear; windows that wait are in
/// the order of the stack indices, those without one last.
TileAssignments withRestored(TileAssignments before, const std::vector<RestoredPlacement>& placements,
                             const std::map<std::string, std::int64_t>& stackIndexByID);

} // namespace kova
