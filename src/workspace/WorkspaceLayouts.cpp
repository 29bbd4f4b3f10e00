// Which layout each display shows, and where its tiles are.
#include "workspace/WorkspaceController.h"

#include "layout/SpanFrame.h"
#include "support/Limits.h"
#include "workspace/LayoutMigration.h"
#include "workspace/WorkspacePreferences.h"

#include <algorithm>
#include <cmath>

namespace kova {

const std::vector<LayoutDefinition>& WorkspaceController::catalogue() const {
    return registry_.theme(state_.profile->themeID).layouts;
}

const Screen* WorkspaceController::screenOf(const std::string& id) const {
    const auto& screens = *state_.screens;
    const auto found =
        std::find_if(screens.begin(), screens.end(), [&](const Screen& screen) { return displayID(screen) == id; });
    return found == screens.end() ? nullptr : &*found;
}

const Screen* WorkspaceController::screenOfTarget(const std::string& targetID) const {
    const auto& screens = *state_.screens;
    const auto found = std::find_if(screens.begin(), screens.end(), [&](const Screen& screen) {
        return slotIDOn(displayID(screen), targetID).has_value();
    });
    return found == screens.end() ? nullptr : &*found;
}

double WorkspaceController::firstScreenMaxY() const {
    return state_.screens->empty() ? 0 : maxY(state_.screens->front().frame);
}

bool WorkspaceController::isOnSomeScreen(const CGRect& frameForWindowService) const {
    const CGRect frameOnScreen = flipped(frameForWindowService, firstScreenMaxY());
    return std::any_of(state_.screens->begin(), state_.screens->end(),
                       [&](const Screen& screen) { return intersectionArea(screen.frame, frameOnScreen) > 0; });
}

const LayoutDefinition* WorkspaceController::resolvedLayout(const std::string& id) const {
    const Screen* screen = screenOf(id);
    return screen ? &layouts_.resolve(*screen, *state_.profile, catalogue()) : nullptr;
}

/// Minimum sizes of the windows that keep to one tile; a spanning window has the room that it needs.
TileMinimumSizes WorkspaceController::tileMinimumSizes(const std::string& id) const {
    TileMinimumSizes sizes;
    const std::string prefix = tileTargetID(id, "");
    const auto& assigned = assignments_.assignedWindowIDs;
    for (auto entry = assigned.lower_bound(prefix); entry != assigned.end(); ++entry) {
        if (!entry->first.starts_with(prefix)) break;
        const ManagedWindow* window = findLive(entry->second);
        if (!window || assignments_.anchorTargetIDsByWindowID.contains(entry->second)) continue;
        const CGSize minimum = minimumSizeOf(*window);
        if (minimum.width > 0 || minimum.height > 0) sizes.emplace(entry->first.substr(prefix.size()), minimum);
    }
    return sizes;
}

const SolvedLayout& WorkspaceController::solvedTiles(const Screen& screen) const {
    return layouts_.solve(screen, *state_.profile, catalogue(), tileMinimumSizes(displayID(screen)));
}

std::optional<CGRect> WorkspaceController::tileFrameOnScreen(const std::string& targetID) const {
    const Screen* screen = screenOfTarget(targetID);
    if (!screen) return std::nullopt;
    const auto slotID = slotIDOn(displayID(*screen), targetID);
    const SolvedLayout& solved = solvedTiles(*screen);
    for (std::size_t i = 0; i < solved.slots.size(); ++i) {
        if (solved.slots[i].id == slotID) return kova::tileFrameOnScreen(solved.frames[i], screen->visibleFrame);
    }
    return std::nullopt;
}

std::optional<CGRect> WorkspaceController::frameForWindow(const std::string& windowID) const {
    const auto target = assignments_.targetOf(windowID);
    const Screen* screen = target ? screenOfTarget(*target) : nullptr;
    if (!screen) return std::nullopt;
    const auto frames = framesOfTiledWindows(*screen);
    const auto frame = frames.find(windowID);
    return frame == frames.end() ? std::nullopt : std::optional(frame->second);
}

std::map<std::string, CGRect> WorkspaceController::framesOfTiledWindows() const {
    std::map<std::string, CGRect> all;
    for (const auto& screen : *state_.screens) all.merge(framesOfTiledWindows(screen));
    return all;
}

std::map<std::string, CGRect> WorkspaceController::framesOfTiledWindows(const Screen& screen) const {
    std::map<std::string, std::vector<CGRect>> cells; // in screen space; those of nobody under no name
    const std::string id = displayID(screen);
    const SolvedLayout& solved = solvedTiles(screen);
    for (std::size_t i = 0; i < solved.slots.size(); ++i) {
        const auto front = assignments_.assignedWindowIDs.find(tileTargetID(id, solved.slots[i].id));
        const bool isTaken = front != assignments_.assignedWindowIDs.end();
        cells[isTaken ? front->second : ""].push_back(kova::tileFrameOnScreen(solved.frames[i], screen.visibleFrame));
    }
    std::map<std::string, CGRect> frames;
    for (const auto& [window, own] : cells) {
        if (window.empty()) continue;
        std::vector<CGRect> others;
        for (const auto& [other, theirs] : cells) {
            if (own.size() > 1 && other != window) others.insert(others.end(), theirs.begin(), theirs.end());
        }
        const CGRect tile = flipped(insetBy(frameOfSpan(own, others), state_.profile->tileInset), firstScreenMaxY());
        const ManagedWindow* live = findLive(window);
        frames[window] = live ? restingFrame(*live, tile) : tile;
    }
    return frames;
}

std::vector<WorkspaceTile> WorkspaceController::tiles() const {
    std::vector<WorkspaceTile> out;
    for (const auto& screen : *state_.screens) {
        const std::string id = displayID(screen);
        const SolvedLayout& solved = solvedTiles(screen);
        const auto frames = framesOfTiledWindows(screen);
        for (std::size_t i = 0; i < solved.slots.size(); ++i) {
            WorkspaceTile tile;
            tile.targetID = tileTargetID(id, solved.slots[i].id);
            tile.displayID = id;
            tile.slot = solved.slots[i];
            tile.frameOnScreen = kova::tileFrameOnScreen(solved.frames[i], screen.visibleFrame);
            tile.frameForWindowService =
                flipped(insetBy(tile.frameOnScreen, state_.profile->tileInset), firstScreenMaxY());
            const auto front = assignments_.assignedWindowIDs.find(tile.targetID);
            if (front != assignments_.assignedWindowIDs.end()) {
                tile.windowID = front->second;
                tile.frameForWindowService = frames.at(front->second);
            }
            const auto stack = assignments_.stackWindowIDsByTarget.find(tile.targetID);
            if (stack != assignments_.stackWindowIDsByTarget.end()) tile.stack = stack->second;
            out.push_back(std::move(tile));
        }
    }
    return out;
}

const Screen* WorkspaceController::screenOfWindow(const ManagedWindow& window) const {
    if (const auto target = assignments_.targetOf(window.id)) {
        if (const Screen* screen = screenOfTarget(*target)) return screen;
    }
    if (!window.frame) return nullptr;
    const CGRect frame = flipped(*window.frame, firstScreenMaxY());
    const Screen* holding = nullptr; // the one that shows most of it, when its middle is off all of them
    double mostShown = 0;
    for (const auto& screen : *state_.screens) {
        if (containsPoint(screen.frame, centre(frame))) return &screen;
        const double shown = intersectionArea(screen.frame, frame);
        if (shown > mostShown) {
            holding = &screen;
            mostShown = shown;
        }
    }
    return holding;
}

std::optional<std::string> WorkspaceController::currentDisplayID() const {
    if (const auto focused = focusedWindowID()) {
        const ManagedWindow* window = findLive(*focused);
        const Screen* screen = window ? screenOfWindow(*window) : nullptr;
        if (screen) return displayID(*screen);
    }
    if (const auto pointer = services_.screens.pointerLocation()) {
        for (const auto& screen : *state_.screens) {
            if (containsPoint(screen.frame, *pointer)) return displayID(screen);
        }
    }
    if (state_.screens->empty()) return std::nullopt;
    return displayID(state_.screens->front());
}

void WorkspaceController::setProfile(WorkspaceProfile profile) {
    if (profile == *state_.profile) return;
    state_.profile.set(std::move(profile));
    saveProfile(services_.preferences, *state_.profile);
}

/// Tiles of the display have moved: everything that shows or holds them follows.
void WorkspaceController::layoutChanged(const std::string& id) {
    layouts_.invalidate(id);
    frames_.reflow().forgetAllPushes();
    (void)arranger_.supersede(); // what an arrangement still had to do was meant for the tiles as they were
    commit({.hasMovedTiles = true,
            .claimant = mayMoveWindows() ? std::optional<std::string>("") : std::nullopt,
            .straying = Straying::any});
}

/// Tiles can move without any layout being chosen: with the minimum sizes of the windows in them.
void WorkspaceController::noteTileGeometry() {
    bool hasMoved = false;
    for (const auto& screen : *state_.screens) {
        const std::string id = displayID(screen);
        const SolvedLayout& solved = solvedTiles(screen);
        const std::string& layoutID = layouts_.resolve(screen, *state_.profile, catalogue()).id;
        hasMoved = displays_.noteShown(id, layoutID, solved) || hasMoved;
    }
    if (hasMoved) noteTilesMoved();
}

Outcome WorkspaceController::selectLayout(const std::string& id, const DisplayLayoutSelection& selection) {
    const Screen* found = screenOf(id);
    if (!found) return Outcome::refused("The display is no longer connected");
    if (selection.layoutID && !findLayout(catalogue(), *selection.layoutID))
        return Outcome::refused("The theme in use has no such layout");
    const Screen screen = *found;
    const auto current = state_.profile->layoutSelectionsByDisplay.find(id);
    if (current != state_.profile->layoutSelectionsByDisplay.end() && current->second == selection) {
        return done(resolvedLayout(id)->name + " on " + screen.localizedName);
    }
    if (const auto seen = requireVisibleScreen(); !seen) return seen;
    const std::string choice =
        selection.layoutID ? "layout " + findLayout(catalogue(), *selection.layoutID)->name : "automatic layout";
    pushUndoSnapshot({choice, applicationsOn(id)});
    tileMemory_.homes().leave(id, {resolvedLayout(id)->id, tilesOf(solvedTiles(screen))}, assignments_);
    WorkspaceProfile profile = *state_.profile;
    profile.layoutSelectionsByDisplay[id] = selection;
    displays_.forgetLayouts(id);
    setProfile(std::move(profile));

    const LayoutDefinition& layout = layouts_.resolve(screen, *state_.profile, catalogue());
    const std::string layoutName = layout.name;
    const DisplayTiles after =
        tilesOf(solveDefinition(layout, {}, screen.visibleFrame.size, state_.profile->tileInset));
    LayoutMigration migration =
        migrateHomes(assignments_, id, tileMemory_.homes().of(id, assignments_), {layout.id, after});
    if (const auto focused = focusedWindowID()) keepInFront(migration, *focused);
    assignments_ = std::move(migration.assignments);
    displays_.noteRegained(migration.regainedWindowIDs, migration.displacedWindowIDs);
    presentRegained();
    layoutChanged(id);
    return done(layoutName + " on " + screen.localizedName);
}

Outcome WorkspaceController::cycleLayout(LayoutStep direction) {
    const auto id = currentDisplayID();
    if (!id) return refuse("No display is connected");
    const auto& all = catalogue();
    const std::string current = resolvedLayout(*id)->id;
    const auto at = std::find_if(all.begin(), all.end(), [&](const auto& layout) { return layout.id == current; });
    const auto count = static_cast<int>(all.size());
    const int step = direction == LayoutStep::next ? 1 : -1;
    const int index = (static_cast<int>(at - all.begin()) + step + count) % count;
    return selectLayout(*id, DisplayLayoutSelection::layout(all[static_cast<std::size_t>(index)].id));
}

Outcome WorkspaceController::resetLayoutSizes(const std::optional<std::string>& wanted) {
    const auto id = wanted ? wanted : currentDisplayID();
    const Screen* screen = id ? screenOf(*id) : nullptr;
    if (!screen) return refuse("No display is connected");
    const std::string name = screen->localizedName;
    if (const auto seen = requireVisibleScreen(); !seen) return seen;
    if (state_.profile->layoutWeightsByDisplay.contains(*id)) {
        pushUndoSnapshot({std::string(action::ResetLayoutSizes::kTraits.undoLabel), applicationsOn(id)});
        WorkspaceProfile profile = *state_.profile;
        profile.layoutWeightsByDisplay.erase(*id);
        setProfile(std::move(profile));
        layoutChanged(*id);
    }
    return done("Layout sizes reset on " + name);
}

Outcome WorkspaceController::setTileInset(double points) {
    if (!(points >= 0 && points <= kLargestTileInset)) return refuseSilently("The gap was not changed");
    if (points == state_.profile->tileInset) return Outcome::done();
    if (const auto seen = requireVisibleScreen(); !seen) return seen;
    pushUndoSnapshot({std::string(action::SetTileInset::kTraits.undoLabel), applicationsOn(std::nullopt)});
    frames_.reflow().forgetAllPushes();
    WorkspaceProfile profile = *state_.profile;
    profile.tileInset = points;
    setProfile(std::move(profile));
    layouts_.invalidateAll();
    commit({.hasMovedTiles = true, .claimant = "", .straying = Straying::any});
    return Outcome::done();
}

} // namespace kova
