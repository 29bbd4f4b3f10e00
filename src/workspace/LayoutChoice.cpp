#include "workspace/LayoutChoice.h"

#include "support/Limits.h"
#include "workspace/LayoutMigration.h"
#include "workspace/WorkspaceParts.h"

#include <algorithm>

namespace kova {

LayoutChoice::LayoutChoice(WorkspaceParts& parts, WorkspaceAccess& access, TileGeometry& geometry,
                           const WindowFinder& finder, TileKeeper& keeper, LayoutFollower& follower, UndoSteps& steps) :
    state_(parts.state),
    assignments_(parts.assignments), tileMemory_(parts.tileMemory), displays_(parts.displays), access_(access),
    geometry_(geometry), finder_(finder), keeper_(keeper), follower_(follower), steps_(steps) {}

Outcome LayoutChoice::selectLayout(const DisplayID& id, const DisplayLayoutSelection& selection) {
    const Screen* found = geometry_.screenOf(id);
    if (!found) return Outcome::refused("The display is no longer connected");
    if (selection.layoutID && !findLayout(geometry_.catalogue(), *selection.layoutID))
        return Outcome::refused("The theme in use has no such layout");
    const Screen screen = *found;
    const auto current = state_.profile->layoutSelectionsByDisplay.find(id);
    if (current != state_.profile->layoutSelectionsByDisplay.end() && current->second == selection) {
        return Outcome::done(geometry_.resolvedLayout(id)->name + " on " + screen.localizedName);
    }
    if (const auto access = access_.requireVisibleScreen(); !access) return access;
    const std::string choice = selection.layoutID
                                   ? "layout " + findLayout(geometry_.catalogue(), *selection.layoutID)->name
                                   : "automatic layout";
    steps_.pushUndoSnapshot({choice, geometry_.applicationsOn(id)});
    tileMemory_.noteLayoutReplaced(id, {geometry_.resolvedLayout(id)->id, tilesOf(geometry_.solvedTiles(screen))},
                                   assignments_);
    WorkspaceProfile profile = *state_.profile;
    profile.layoutSelectionsByDisplay[id] = selection;
    displays_.forgetLayouts(id);
    keeper_.setProfile(std::move(profile));

    const LayoutDefinition& layout = geometry_.layoutOn(screen);
    const std::string layoutName = layout.name;
    const DisplayTiles after =
        tilesOf(solveDefinition(layout, {}, screen.visibleFrame.size, state_.profile->tileInset));
    LayoutMigration migration =
        migrateRemembered(assignments_, id, tileMemory_.rememberedLayouts().of(id, assignments_), {layout.id, after});
    if (const auto focused = finder_.focusedWindowID()) keepInFront(migration, *focused);
    assignments_ = std::move(migration.assignments);
    displays_.noteWindowsToPresent(migration.returnedWindowIDs, migration.displacedWindowIDs);
    follower_.presentReturnedWindows();
    keeper_.layoutChanged(id);
    return Outcome::done(layoutName + " on " + screen.localizedName);
}

Outcome LayoutChoice::cycleLayout(const action::CycleLayout& cycle) {
    const auto id = cycle.displayID ? cycle.displayID : finder_.currentDisplayID();
    if (!id || !geometry_.screenOf(*id)) return access_.refuse("No display is connected");
    const auto& all = geometry_.catalogue();
    const std::string current = geometry_.resolvedLayout(*id)->id;
    const auto at = std::find_if(all.begin(), all.end(), [&](const auto& layout) { return layout.id == current; });
    const auto count = static_cast<int>(all.size());
    const int step = cycle.step == LayoutStep::next ? 1 : -1;
    const int index = (static_cast<int>(at - all.begin()) + step + count) % count;
    return selectLayout(*id, DisplayLayoutSelection::layout(all[static_cast<std::size_t>(index)].id));
}

Outcome LayoutChoice::resetLayoutSizes(const std::optional<DisplayID>& requestedID) {
    const auto id = requestedID ? requestedID : finder_.currentDisplayID();
    const Screen* screen = id ? geometry_.screenOf(*id) : nullptr;
    if (!screen) return access_.refuse("No display is connected");
    const std::string name = screen->localizedName;
    if (const auto access = access_.requireVisibleScreen(); !access) return access;
    if (state_.profile->layoutWeightsByDisplay.contains(*id)) {
        steps_.pushUndoSnapshot(
            {std::string(action::ResetLayoutSizes::kTraits.undoLabel), geometry_.applicationsOn(id)});
        WorkspaceProfile profile = *state_.profile;
        profile.layoutWeightsByDisplay.erase(*id);
        keeper_.setProfile(std::move(profile));
        keeper_.layoutChanged(*id);
    }
    return Outcome::done("Layout sizes reset on " + name);
}

Outcome LayoutChoice::setTileInset(double points) {
    if (!(points >= 0 && points <= kLargestTileInset))
        return access_.refuseSilently("The tile inset was not changed: it must be from 0 to 100 points");
    if (points == state_.profile->tileInset) return Outcome::done();
    if (const auto access = access_.requireVisibleScreen(); !access) return access;
    steps_.pushUndoSnapshot(
        {std::string(action::SetTileInset::kTraits.undoLabel), geometry_.applicationsOn(std::nullopt)});
    WorkspaceProfile profile = *state_.profile;
    profile.tileInset = points;
    keeper_.setProfile(std::move(profile));
    geometry_.layouts().invalidateAll();
    keeper_.commit({.hasMovedTiles = true,
                    .resetsLimits = true,
                    .claimant = "",
                    .correctedDrift = FrameKeeper::CorrectedDrift::any});
    return Outcome::done();
}

} // namespace kova
