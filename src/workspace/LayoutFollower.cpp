#include "workspace/LayoutFollower.h"

#include "workspace/LayoutMigration.h"
#include "workspace/WorkspaceParts.h"

#include <algorithm>
#include <utility>

namespace kova {

namespace {

/// Whether all windows of the display are in tiles that the layout has.
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

/// Shows front windows, and hides stacked windows, that have returned to their tiles.
void LayoutFollower::presentReturnedWindows() {
    const auto windows = displays_.takeWindowsToPresent();
    for (const auto& id : windows.toShow) {
        const ManagedWindow* window = liveWindows_.find(id);
        if (!window || !assignments_.isAssigned(id)) continue;
        if (window->isMinimized || windowService_.isApplicationHidden(window->processIdentifier)) {
            presenter_.restore(ManagedWindow(*window));
        }
    }
    std::vector<WindowID> toHide;
    for (const auto& id : windows.toHide) {
        if (!assignments_.isAssigned(id) && assignments_.isInAnyTile(id)) toHide.push_back(id);
    }
    presenter_.hideDisplaced(toHide);
}

/// If a display has another layout now because its size has changed, its windows move to the tiles of that layout. This
/// makes no undo step. If the display had that layout before, the windows return to their former tiles in that layout.
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
        presenter_.hideDisplaced(migration.displacedWindowIDs);
    }
    migrateFromMissingTiles();
}

/// Moves windows from tiles that the present layout lacks. Assignments of a snapshot or a session may name such tiles.
void LayoutFollower::migrateFromMissingTiles() {
    for (const auto& screen : *state_.screens) {
        const DisplayID id = displayID(screen);
        const LayoutDefinition& layout = geometry_.layoutOn(screen);
        if (hasTilesFor(layout, id, assignments_)) continue;
        const DisplayTiles after =
            tilesOf(solveDefinition(layout, {}, screen.visibleFrame.size, state_.profile->tileInset));
        LayoutMigration migration = migrateAssignments(assignments_, id, {}, after);
        assignments_ = std::move(migration.assignments);
        presenter_.hideDisplaced(migration.displacedWindowIDs);
    }
}

} // namespace kova
