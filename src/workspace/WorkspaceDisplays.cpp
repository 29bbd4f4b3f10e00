// Displays that come, go and change their size, and what becomes of the windows on them.
#include "workspace/WorkspaceController.h"

#include "workspace/DisplaySuccession.h"
#include "workspace/LayoutMigration.h"
#include "workspace/VisibleArea.h"

#include <algorithm>
#include <utility>

namespace kova {

namespace {

std::set<std::string> idsOf(const std::vector<Screen>& screens) {
    std::set<std::string> ids;
    for (const auto& screen : screens) ids.insert(displayID(screen));
    return ids;
}

/// Whether every window of the display is in a tile that the layout has.
bool hasTilesFor(const LayoutDefinition& layout, const std::string& displayID, const TileAssignments& assignments) {
    const auto isOfLayout = [&](const auto& entry) {
        return std::ranges::any_of(layout.slots,
                                   [&](const auto& slot) { return slotIDOn(displayID, entry.first) == slot.id; });
    };
    const TileAssignments here = assignments.onDisplay(displayID);
    return std::ranges::all_of(here.assignedWindowIDs, isOfLayout) &&
           std::ranges::all_of(here.stackWindowIDsByTarget, isOfLayout);
}

} // namespace

void WorkspaceController::readScreens() {
    auto screens = services_.screens.screens();
    for (Screen& screen : screens) screen.knownID = displayID(screen);
    state_.screens.set(std::move(screens));
}

void WorkspaceController::screensChanged() {
    const std::vector<Screen> before = *state_.screens;
    readScreens();
    layouts_.invalidateAll();
    displays_.strandedFloats().noteGone(before, idsOf(*state_.screens), liveWindows_.all(), assignments_);
    const bool keepsFocusMode = isBesideFocusMode(before);
    // The zoomed window's frame was that of the display before; what is restored must be in sight on those of now.
    if (isRunning() && !keepsFocusMode) closeFocusMode();
    noteDisplaysThatCameAndWent(idsOf(before));
    noteTilesMoved();
    giveUpUnreachablePlacements();
    frames_.reflow().forgetAllPushes();
    displays_.beginSettling();
    if (!mayMoveWindows()) return;
    settleOnDisplays();
    if (keepsFocusMode) keepFramesBesideFocusMode();
    refresh();
}

/// Whether the change concerns only the visible frames of other displays than the zoomed window's, as when a panel or a
/// dock comes or goes there, and leaves them their layouts.
bool WorkspaceController::isBesideFocusMode(const std::vector<Screen>& before) const {
    if (!focusMode_.isOn()) return false;
    const auto& now = *state_.screens;
    return std::equal(before.begin(), before.end(), now.begin(), now.end(), [this](const Screen& a, const Screen& b) {
        const std::string id = displayID(b);
        if (displayID(a) != id || a.frame != b.frame) return false;
        if (focusMode_.ownsDisplay(id)) return a.visibleFrame == b.visibleFrame;
        const ShownLayout* last = displays_.shown(id);
        return last && last->layoutID == layouts_.resolve(b, *state_.profile, catalogue()).id;
    });
}

void WorkspaceController::keepFramesBesideFocusMode() {
    WorkspaceUndoSnapshot* before = focusMode_.snapshot();
    if (!before) return;
    for (const auto& screen : *state_.screens) {
        if (focusMode_.ownsDisplay(displayID(screen))) continue;
        for (const auto& [id, frame] : framesOfTiledWindows(screen)) before->windowFrames[id] = frame;
    }
}

/// Only on record: whether anything may be moved now is another question.
void WorkspaceController::noteDisplaysThatCameAndWent(const std::set<std::string>& before) {
    for (const auto& [formerID, newID] : displays_.noteConnected(before, idsOf(*state_.screens), assignments_)) {
        displayHasNewID(formerID, newID);
    }
    displays_.takeBackCrowdedOut(assignments_, idsOf(*state_.screens), [this](const std::string& id) {
        const ManagedWindow* window = findLive(id);
        return window && !window->isElsewhere && liveWindows_.minimized().contains(id);
    });
    // Without a look at the tiles: what the displays showed before is still to be compared with what they show now.
    state_.assignedWindowIDs.set(assignments_.assignedWindowIDs);
    state_.stackWindowIDsByTarget.set(assignments_.stackWindowIDsByTarget);
    session_.noteChange(); // the record names the displays that are away, too
}

/// It is the same display, as far as anybody can tell, in another size or at another place.
void WorkspaceController::displayHasNewID(const std::string& formerID, const std::string& newID) {
    const auto rename = [&](auto& part) {
        if constexpr (requires { part.renameDisplay(formerID, newID); }) part.renameDisplay(formerID, newID);
    };
    std::apply([&](auto&... part) { (rename(part), ...); }, partsOf(*this));
    WorkspaceProfile profile = *state_.profile;
    displays_.carryLayout(profile, formerID, newID);
    if (profile != *state_.profile) setProfile(std::move(profile));
}

/// Windows and layouts follow the displays as they are now.
void WorkspaceController::settleOnDisplays() {
    migrateChangedDisplays();
    presentRegained();
    returnStrandedFloats();
    commit({.claimant = ""});
}

void WorkspaceController::returnStrandedFloats() {
    const auto returned =
        displays_.strandedFloats().takeReturned(idsOf(*state_.screens), liveWindows_.all(), assignments_);
    for (const auto& [id, frame] : returned) {
        const ManagedWindow window = *findLive(id);
        if (!isLeftAlone(window)) writeFrame(window, frame, AccessibilityWindowService::BringToFront::no);
    }
}

/// Who is in front again of a tile that it had lost comes back to the screen; who waits again leaves it.
void WorkspaceController::presentRegained() {
    const auto regained = displays_.takeRegained();
    for (const auto& id : regained.fronts) {
        const ManagedWindow* window = findLive(id);
        if (!window || !assignments_.isAssigned(id)) continue;
        if (window->isMinimized || windowService_->isApplicationHidden(window->processIdentifier)) {
            bringBack(ManagedWindow(*window));
        }
    }
    std::vector<std::string> leaving;
    for (const auto& id : regained.waiting) {
        if (!assignments_.isAssigned(id) && assignments_.isInAnyTile(id)) leaving.push_back(id);
    }
    presentDisplaced(leaving);
}

/// A display that changed its size may have changed its layout with it: its windows follow, and nothing is undone. With
/// the layout that it had before, they are where they were.
void WorkspaceController::migrateChangedDisplays() {
    for (const auto& screen : *state_.screens) {
        const std::string id = displayID(screen);
        const ShownLayout* last = displays_.shown(id);
        const LayoutDefinition& layout = layouts_.resolve(screen, *state_.profile, catalogue());
        if (!last || last->layoutID == layout.id) continue;
        displays_.leaveLayout(id, last->layoutID, assignments_);
        tileMemory_.homes().forgetDisplay(id);
        const DisplayTiles after =
            tilesOf(solveDefinition(layout, {}, screen.visibleFrame.size, state_.profile->tileInset));
        LayoutMigration migration = migrateAssignments(assignments_, id, last->tiles, after);
        assignments_ = std::move(migration.assignments);
        displays_.takeBackLayout(id, layout.id, assignments_);
        std::erase_if(migration.displacedWindowIDs, [this](const auto& w) { return assignments_.isAssigned(w); });
        presentDisplaced(migration.displacedWindowIDs);
    }
    migrateFromMissingTiles();
    publishAssignments();
}

/// Assignments of an earlier time may name tiles that the layout of now does not have.
void WorkspaceController::migrateFromMissingTiles() {
    for (const auto& screen : *state_.screens) {
        const std::string id = displayID(screen);
        const LayoutDefinition& layout = layouts_.resolve(screen, *state_.profile, catalogue());
        if (hasTilesFor(layout, id, assignments_)) continue;
        const DisplayTiles after =
            tilesOf(solveDefinition(layout, {}, screen.visibleFrame.size, state_.profile->tileInset));
        LayoutMigration migration = migrateAssignments(assignments_, id, {}, after);
        assignments_ = std::move(migration.assignments);
        presentDisplaced(migration.displacedWindowIDs);
    }
}

void WorkspaceController::noteMovedByUser(const std::string& windowID) {
    displays_.forget(windowID);
    awaited_.noteMovedByUser(windowID);
    tileMemory_.homes().forget(windowID);
}

/// Only displays that stay away let go of their windows.
void WorkspaceController::displaysSettled() {
    if (!mayMoveWindows()) return;
    displays_.forgetRecentlyGone();
    placeHomelessWindows();
    returnStrandedFloats(); // of displays that returned while the screen could not be seen
    bringIntoSight();
}

bool WorkspaceController::isAwaitedHome(const std::string& windowID) const {
    return displays_.isSettling() && displays_.isHomeless(windowID);
}

/// Windows whose display stays away take tiles that are free, best the ones of the same name. Nobody is pushed out, and
/// they go home when their display returns. Under a window that owns its display nothing changes before it gives it
/// back.
void WorkspaceController::placeHomelessWindows() {
    if (pointer_.isPausingPolls()) return displays_.beginSettling(); // the hand comes first
    const auto fronts = placeHomelessFronts();
    const auto waiting = takeWaitingAlong();
    if (focusMode_.isOn()) {
        displays_.noteHeldBackByZoom(!displays_.absentDisplays().empty());
        keepBesideFocusMode(fronts, waiting);
    }
    if (!fronts.empty() || !waiting.empty()) commit({});
}

/// What no tile was free for, and what floated on a display that is gone, may lie where no display shows it.
void WorkspaceController::bringIntoSight() {
    if (pointer_.isPausingPolls() || state_.screens->empty()) return;
    const double top = firstScreenMaxY();
    for (const ManagedWindow& live : std::vector(liveWindows_.all())) {
        const auto tile = assignments_.targetOf(live.id);
        const bool hasTile = tile && screenOfTarget(*tile);
        if (hasTile || !live.isVisible || !live.frame || isLeftAlone(live)) continue;
        const CGRect onScreen = flipped(*live.frame, top);
        const CGRect visible = flipped(screenNearest(*state_.screens, onScreen)->visibleFrame, top);
        const bool isInSight = displays_.isHomeless(live.id) ? containsWithin(visible, *live.frame, 0)
                                                             : isMiddleShown(*state_.screens, onScreen);
        const CGRect inSight = isInSight ? *live.frame : movedIntoArea(*live.frame, visible);
        if (!isInSight) writeFrame(live, inSight, AccessibilityWindowService::BringToFront::no);
        displays_.strandedFloats().settle(live.id, inSight);
    }
    services_.accessibility.flush();
}

bool WorkspaceController::isZoomedOver(const WorkspaceTile& tile) const {
    return focusMode_.ownsDisplay(tile.displayID);
}

/// The windows that were placed.
std::vector<std::string> WorkspaceController::placeHomelessFronts() {
    const auto isFree = [this](const WorkspaceTile& tile) {
        return !tile.windowID && tile.stack.empty() && !isZoomedOver(tile);
    };
    std::vector<std::pair<std::string, std::string>> homeless; // slot id, window id
    for (const auto& [displayID, held] : displays_.absentDisplays()) {
        for (const auto& [target, windowID] : held.assignedWindowIDs) {
            const auto slot = slotIDOn(displayID, target);
            auto now = assignments_.targetOf(windowID);
            if (!now) now = assignments_.stackTargetOf(windowID); // it waits behind another window
            const bool hasTile = (now && screenOfTarget(*now)) || held.targetOf(windowID) != target;
            if (slot && !hasTile) homeless.emplace_back(*slot, windowID);
        }
    }
    std::vector<std::string> placed;
    for (const auto& [slotID, windowID] : homeless) {
        const ManagedWindow* live = findLive(windowID);
        if (!live || !live->isVisible || isLeftAlone(*live)) continue;
        const ManagedWindow window = *live;
        std::optional<Covering> chosen;
        bool isNamesake = false;
        for (const auto& tile : tiles()) {
            const bool sameName = tile.slot.id == slotID;
            if (!isFree(tile) || (chosen && (isNamesake || !sameName))) continue;
            auto covering = coveringFor(window, tile.targetID);
            if (!covering || covering->targets.size() > 1) continue; // it would need tiles of others
            chosen = std::move(covering);
            isNamesake = sameName;
        }
        if (!chosen) continue;
        place(window, *chosen, AccessibilityWindowService::BringToFront::no);
        placed.push_back(windowID);
    }
    return placed;
}

/// Who waited behind a window goes on waiting behind it, or else behind the window of another tile, best the one of the
/// same name: in a tile that is away nobody could reach it. Gives those that wait elsewhere now.
std::vector<std::string> WorkspaceController::takeWaitingAlong() {
    std::vector<std::string> taken;
    for (const auto& [displayID, held] : displays_.absentDisplays()) {
        for (const auto& [home, stack] : held.stackWindowIDsByTarget) {
            const auto front = held.assignedWindowIDs.find(home);
            const auto slot = slotIDOn(displayID, home);
            std::optional<std::string> there;
            if (front != held.assignedWindowIDs.end()) there = assignments_.targetOf(front->second);
            if (!there || !screenOfTarget(*there)) {
                there.reset();
                for (const auto& tile : tiles()) {
                    if (!tile.windowID || isZoomedOver(tile)) continue;
                    const bool isNamesake = slot && tile.slot.id == *slot;
                    if (!there || isNamesake) there = assignments_.targetOf(*tile.windowID);
                    if (isNamesake) break;
                }
            }
            if (!there) continue;
            for (const auto& member : stack) {
                const auto now = assignments_.stackTargetOf(member);
                if (!now || screenOfTarget(*now) || assignments_.isAssigned(member)) continue;
                assignments_.insertIntoStack(*there, member, TileAssignments::StackPosition::behind);
                taken.push_back(member);
            }
        }
    }
    return taken;
}

/// What happened on other displays is not undone when the zoomed window gives its own back.
void WorkspaceController::keepBesideFocusMode(const std::vector<std::string>& fronts,
                                              const std::vector<std::string>& waiting) {
    WorkspaceUndoSnapshot* snapshot = focusMode_.snapshot();
    if (!snapshot) return;
    for (const auto& id : fronts) snapshot->tiles.adopt(id, assignments_);
    for (const auto& id : waiting) {
        if (const auto tile = assignments_.stackTargetOf(id)) {
            snapshot->tiles.insertIntoStack(*tile, id, TileAssignments::StackPosition::behind);
        }
    }
    for (const auto& id : fronts) {
        if (const auto frame = frameForWindow(id)) snapshot->windowFrames[id] = *frame;
    }
}

TileAssignments WorkspaceController::assignmentsOnAbsentDisplays() const {
    TileAssignments away = assignments_;
    for (const auto& tile : tiles()) {
        if (tile.windowID) away.remove(*tile.windowID);
        for (const auto& waiting : tile.stack) away.remove(waiting);
    }
    return away;
}

/// Verification would carry a window that the desktop has rescued from a vanished display back to where nobody sees it.
void WorkspaceController::giveUpUnreachablePlacements() {
    windowService_->cancelPlacements([this](const CGRect& target) { return !isOnSomeScreen(target); });
}

} // namespace kova
