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

std::string layoutKey(const std::string& displayID, const std::string& layoutID) {
    return displayID + "\n" + layoutID;
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
    const bool keepsFocusMode = isBesideFocusMode(before);
    // The zoomed window's frame was that of the display before; what is restored must be in sight on those of now.
    if (isRunning() && !keepsFocusMode) closeFocusMode();
    noteDisplaysThatCameAndWent(idsOf(before));
    state_.layoutRevision.set(*state_.layoutRevision + 1);
    giveUpUnreachablePlacements();
    reflow_.forgetAllPushes();
    awaitStableDisplays();
    if (!mayMoveWindows()) return;
    settleOnDisplays();
    if (keepsFocusMode) keepFramesBesideFocusMode();
    refresh();
}

/// Whether the change concerns only the visible frames of other displays than the zoomed window's, as when a panel or a
/// dock comes or goes there, and leaves them their layouts.
bool WorkspaceController::isBesideFocusMode(const std::vector<Screen>& before) const {
    if (!*state_.focusMode) return false;
    const auto& now = *state_.screens;
    return std::equal(before.begin(), before.end(), now.begin(), now.end(), [this](const Screen& a, const Screen& b) {
        const std::string id = displayID(b);
        if (displayID(a) != id || a.frame != b.frame) return false;
        if (id == (*state_.focusMode)->displayID) return a.visibleFrame == b.visibleFrame;
        const auto last = lastLayoutByDisplay_.find(id);
        return last != lastLayoutByDisplay_.end() &&
               last->second.layoutID == layouts_.resolve(b, *state_.profile, catalogue()).id;
    });
}

void WorkspaceController::keepFramesBesideFocusMode() {
    if (!focusZoomSnapshot_) return;
    for (const auto& screen : *state_.screens) {
        if (displayID(screen) == (*state_.focusMode)->displayID) continue;
        for (const auto& [id, frame] : framesOfTiledWindows(screen)) focusZoomSnapshot_->windowFrames[id] = frame;
    }
}

/// Only on record: whether anything may be moved now is another question.
void WorkspaceController::noteDisplaysThatCameAndWent(const std::set<std::string>& before) {
    const auto now = idsOf(*state_.screens);
    for (const auto& id : before) {
        if (now.contains(id)) continue;
        absence_.leave(id, id, assignments_);
        if (isNamedByFrame(id)) latelyGone_.insert(id);
    }
    std::set<std::string> unknown;
    for (const auto& id : now) {
        if (before.contains(id)) continue;
        const bool isKnown =
            latelyGone_.erase(id) > 0 || absence_.holds(id) || assignments_.onDisplay(id) != TileAssignments{};
        if (isKnown) {
            takeBack(absence_, id);
        } else {
            unknown.insert(id);
        }
    }
    for (const auto& [formerID, newID] : successorsOfDisplays(latelyGone_, unknown)) {
        latelyGone_.erase(formerID);
        takeBack(absence_, formerID);
        displayHasNewID(formerID, newID);
    }
    // Without a look at the tiles: what the displays showed before is still to be compared with what they show now.
    state_.assignedWindowIDs.set(assignments_.assignedWindowIDs);
    state_.stackWindowIDsByTarget.set(assignments_.stackWindowIDsByTarget);
    session_->noteChange(); // who is away is of the record, too
}

void WorkspaceController::takeBack(DisplayAbsence& homes, const std::string& key) {
    if (!homes.holds(key)) return;
    auto back = homes.comeBack(key, std::move(assignments_));
    assignments_ = std::move(back.assignments);
    regainedFronts_.insert(back.regainedFronts.begin(), back.regainedFronts.end());
    regainedWaiting_.insert(back.regainedWaiting.begin(), back.regainedWaiting.end());
}

/// It is the same display, as far as anybody can tell, in another size or at another place.
void WorkspaceController::displayHasNewID(const std::string& formerID, const std::string& newID) {
    assignments_.renameDisplay(formerID, newID);
    outgrown_.renameDisplay(formerID, newID);
    spaces_.renameDisplay(formerID, newID);
    layoutHomes_.renameDisplay(formerID, newID);
    undo_.renameDisplay(formerID, newID);
    for (auto& entry : historyBeforeFocusMode_) entry.snapshot.renameDisplay(formerID, newID);
    if (focusZoomSnapshot_) focusZoomSnapshot_->renameDisplay(formerID, newID);
    for (auto& placement : restoration_.pending) {
        if (placement.displayID == formerID) placement.displayID = newID;
    }
    renameDisplay(pendingApplicationPlacements_, formerID, newID);
    state_.pendingLaunches.set(applicationsOf(pendingApplicationPlacements_));
    if (auto shown = lastLayoutByDisplay_.extract(formerID)) {
        lastLayoutByDisplay_[newID] = std::move(shown.mapped());
    }
    WorkspaceProfile profile = *state_.profile;
    copyDisplay(profile, formerID, newID);
    // Of all the sizes that a display goes through only the first, at which its layout was chosen, is kept for ever.
    if (carriedDisplays_.erase(formerID) > 0) eraseDisplay(profile, formerID);
    if (!state_.profile->layoutSelectionsByDisplay.contains(newID)) carriedDisplays_.insert(newID);
    if (profile != *state_.profile) setProfile(std::move(profile));
}

/// Windows and layouts follow the displays as they are now.
void WorkspaceController::settleOnDisplays() {
    migrateChangedDisplays();
    presentRegained();
    claimRoomWhereNeeded();
    reapplyTileFrames();
    services_.accessibility.flush();
}

/// Who is in front again of a tile that it had lost comes back to the screen; who waits again leaves it.
void WorkspaceController::presentRegained() {
    const auto fronts = std::exchange(regainedFronts_, {});
    const auto waiting = std::exchange(regainedWaiting_, {});
    for (const auto& id : fronts) {
        const ManagedWindow* window = findLive(id);
        if (!window || !assignments_.isAssigned(id)) continue;
        if (window->isMinimized || windowService_->isApplicationHidden(window->processIdentifier)) {
            bringBack(ManagedWindow(*window));
        }
    }
    std::vector<std::string> leaving;
    for (const auto& id : waiting) {
        if (!assignments_.isAssigned(id) && assignments_.isInAnyTile(id)) leaving.push_back(id);
    }
    presentDisplaced(leaving);
}

/// A display that changed its size may have changed its layout with it: its windows follow, and nothing is undone. With
/// the layout that it had before, they are where they were.
void WorkspaceController::migrateChangedDisplays() {
    for (const auto& screen : *state_.screens) {
        const std::string id = displayID(screen);
        const auto last = lastLayoutByDisplay_.find(id);
        const LayoutDefinition& layout = layouts_.resolve(screen, *state_.profile, catalogue());
        if (last == lastLayoutByDisplay_.end() || last->second.layoutID == layout.id) continue;
        outgrown_.leave(layoutKey(id, last->second.layoutID), id, assignments_);
        layoutHomes_.forgetDisplay(id);
        const DisplayTiles after =
            tilesOf(solveDefinition(layout, {}, screen.visibleFrame.size, state_.profile->tileInset));
        LayoutMigration migration = migrateAssignments(assignments_, id, last->second.tiles, after);
        assignments_ = std::move(migration.assignments);
        takeBack(outgrown_, layoutKey(id, layout.id));
        std::erase_if(migration.displacedWindowIDs, [this](const auto& w) { return assignments_.isAssigned(w); });
        presentDisplaced(migration.displacedWindowIDs);
    }
    // What is remembered of another time may name tiles that a display of another size does not have.
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
    publishAssignments();
}

/// The user has chosen what the display shows.
void WorkspaceController::forgetOutgrownLayouts(const std::string& id) {
    outgrown_.forgetKeys(layoutKey(id, ""));
}

void WorkspaceController::noteMovedByUser(const std::string& windowID) {
    absence_.forget(windowID);
    outgrown_.forget(windowID);
    if (!restoration_.pending.empty()) restoration_.movedByUser.insert(windowID);
    layoutHomes_.forget(windowID);
}

/// A standby looks like an unplugging: only displays that stay away let go of their windows.
void WorkspaceController::awaitStableDisplays() {
    displaysAreStableAt_ = services_.queue.uptime() + kDisplaysAreStableAfter;
    services_.queue.after(kDisplaysAreStableAfter, lifetime_.guard([this, due = displaysAreStableAt_] {
        if (due != displaysAreStableAt_ || !mayMoveWindows()) return;
        latelyGone_.clear();
        placeHomelessWindows();
        bringIntoSight();
    }));
}

/// What a step back assigns to a display that is not connected counts as held by that display.
void WorkspaceController::leaveAbsentDisplays() {
    std::set<std::string> ids;
    for (const auto& [target, window] : assignments_.assignedWindowIDs) {
        if (!screenOfTarget(target)) ids.insert(target.substr(0, target.find("::")));
    }
    for (const auto& id : ids) {
        if (!absence_.holds(id)) absence_.leave(id, id, assignments_);
    }
}

bool WorkspaceController::isAwaitedHome(const std::string& windowID) const {
    return services_.queue.uptime() < displaysAreStableAt_ && absence_.isHomeless(windowID);
}

/// Windows whose display stays away take tiles that are free, best the ones of the same name. Nobody is pushed out, and
/// they go home when their display returns. Under a window that owns its display nothing changes before it gives it
/// back.
void WorkspaceController::placeHomelessWindows() {
    if (suspension_.isSuspended()) return awaitStableDisplays(); // the hand comes first
    const auto fronts = placeHomelessFronts();
    const auto waiting = takeWaitingAlong();
    if (*state_.focusMode) {
        isZoomInTheWayOfHomeless_ = !absence_.homes().empty();
        keepBesideFocusMode(fronts, waiting);
    }
    if (fronts.empty() && waiting.empty()) return;
    publishAssignments();
    reapplyTileFrames();
    services_.accessibility.flush();
}

/// What no tile was free for, and what floated on a display that is gone, may lie where no display shows it.
void WorkspaceController::bringIntoSight() {
    if (suspension_.isSuspended() || state_.screens->empty()) return;
    const double top = firstScreenMaxY();
    for (const ManagedWindow& live : std::vector(liveWindows_)) {
        const auto tile = assignments_.targetOf(live.id);
        const bool hasTile = tile && screenOfTarget(*tile);
        if (hasTile || !live.isVisible || !live.frame || isLeftAlone(live)) continue;
        const CGRect onScreen = flipped(*live.frame, top);
        const CGRect visible = flipped(screenNearest(*state_.screens, onScreen)->visibleFrame, top);
        const bool isInSight = absence_.isHomeless(live.id) ? containsWithin(visible, *live.frame, 0)
                                                            : isMiddleShown(*state_.screens, onScreen);
        if (!isInSight)
            writeFrame(live, movedIntoArea(*live.frame, visible), AccessibilityWindowService::BringToFront::no);
    }
    services_.accessibility.flush();
}

bool WorkspaceController::isZoomedOver(const WorkspaceTile& tile) const {
    return *state_.focusMode && (*state_.focusMode)->displayID == tile.displayID;
}

/// The windows that were placed.
std::vector<std::string> WorkspaceController::placeHomelessFronts() {
    const auto isFree = [this](const WorkspaceTile& tile) {
        return !tile.windowID && tile.stack.empty() && !isZoomedOver(tile);
    };
    std::vector<std::pair<std::string, std::string>> homeless; // slot id, window id
    for (const auto& [displayID, held] : absence_.homes()) {
        for (const auto& [target, windowID] : held.assignedWindowIDs) {
            const auto slot = slotIDOn(displayID, target);
            const auto now = assignments_.targetOf(windowID);
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
    for (const auto& [displayID, held] : absence_.homes()) {
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
    if (!focusZoomSnapshot_) return;
    WorkspaceUndoSnapshot& snapshot = *focusZoomSnapshot_;
    snapshot.changeAssignments([&](TileAssignments& then) {
        for (const auto& id : fronts) then.adopt(id, assignments_);
        for (const auto& id : waiting) {
            if (const auto tile = assignments_.stackTargetOf(id)) {
                then.insertIntoStack(*tile, id, TileAssignments::StackPosition::behind);
            }
        }
    });
    for (const auto& id : fronts) {
        if (const auto frame = frameForWindow(id)) snapshot.windowFrames[id] = *frame;
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
