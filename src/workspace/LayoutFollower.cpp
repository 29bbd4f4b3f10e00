#include "workspace/LayoutFollower.h"

#include "workspace/LayoutMigration.h"
#include "workspace/WorkspaceParts.h"

#include <algorithm>
#include <utility>

namespace kova {

namespace {

/// Whether every window of the display is in a tile that the layout has.
bool hasTilesFor(const LayoutDefinition& layout, const DisplayID& displayID, const TileAssignments& assignments) {
    const auto isOfLayout = [&](const auto& entry) {
        return std::ranges::any_of(layout.slots, [&](const auto& slot) {
            return entry.first == TileTarget{displayID, slot.id};
        });
    };
    const TileAssignments here = assignments.onDisplay(displayID);
    return std::ranges::all_of(here.assignedWindowIDs, isOfLayout) &&
           std::ranges::all_of(here.stackWindowIDsByTarget, isOfLayout);
}

} // namespace

LayoutFollower::LayoutFollower(WorkspaceParts& parts, TileGeometry& geometry, WindowPresenter& presenter) :
    windowService_(*parts.windowService), state_(parts.state), liveWindows_(parts.liveWindows),
    assignments_(parts.assignments), tileMemory_(parts.tileMemory), displays_(parts.displays), geometry_(geometry),
    presenter_(presenter) {}

/// Shows the windows that got their tile back, and hides those that are stacked again.
void LayoutFollower::presentReturned() {
    const auto returned = displays_.takeReturned();
    for (const auto& id : returned.fronts) {
        const ManagedWindow* window = liveWindows_.find(id);
        if (!window || !assignments_.isAssigned(id)) continue;
        if (window->isMinimized || windowService_.isApplicationHidden(window->processIdentifier)) {
            presenter_.bringBack(ManagedWindow(*window));
        }
    }
    std::vector<WindowID> leaving;
    for (const auto& id : returned.waiting) {
        if (!assignments_.isAssigned(id) && assignments_.isInAnyTile(id)) leaving.push_back(id);
    }
    presenter_.presentDisplaced(leaving);
}

/// If a display has another layout because of its size, its windows move to the tiles of that layout, without an undo
/// step. If the display had that layout before, its windows return to their former tiles in it.
void LayoutFollower::migrateChangedDisplays() {
    for (const auto& screen : *state_.screens) {
        const DisplayID id = displayID(screen);
        const ShownLayout* last = displays_.shown(id);
        const LayoutDefinition& layout = geometry_.layoutOn(screen);
        if (!last || last->layoutID == layout.id) continue;
        displays_.rememberLayout(id, last->layoutID, assignments_);
        tileMemory_.forgetRememberedLayoutsOn(id);
        const DisplayTiles after =
            tilesOf(solveDefinition(layout, {}, screen.visibleFrame.size, state_.profile->tileInset));
        LayoutMigration migration = migrateAssignments(assignments_, id, last->tiles, after);
        assignments_ = std::move(migration.assignments);
        displays_.returnWindowsToLayout(id, layout.id, assignments_);
        std::erase_if(migration.displacedWindowIDs, [this](const auto& w) { return assignments_.isAssigned(w); });
        presenter_.presentDisplaced(migration.displacedWindowIDs);
    }
    migrateFromMissingTiles();
}

/// Assignments of a snapshot or session may name tiles that the present layout lacks.
void LayoutFollower::migrateFromMissingTiles() {
    for (const auto& screen : *state_.screens) {
        const DisplayID id = displayID(screen);
        const LayoutDefinition& layout = geometry_.layoutOn(screen);
        if (hasTilesFor(layout, id, assignments_)) continue;
        const DisplayTiles after =
            tilesOf(solveDefinition(layout, {}, screen.visibleFrame.size, state_.profile->tileInset));
        LayoutMigration migration = migrateAssignments(assignments_, id, {}, after);
        assignments_ = std::move(migration.assignments);
        presenter_.presentDisplaced(migration.displacedWindowIDs);
    }
}

} // namespace kova
