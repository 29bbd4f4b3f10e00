// Putting single windows into tiles, and keeping every tiled window at its tile's frame.
#include "workspace/WorkspaceController.h"

#include "workspace/VisibleArea.h"

#include <algorithm>

namespace kova {

namespace {

using BringToFront = AccessibilityWindowService::BringToFront;

std::set<pid_t> processesInFront(const TileAssignments& assignments, const std::vector<ManagedWindow>& windows) {
    std::set<std::string> fronts;
    for (const auto& [target, windowID] : assignments.assignedWindowIDs) fronts.insert(windowID);
    std::set<pid_t> processes;
    for (const auto& window : windows) {
        if (fronts.contains(window.id)) processes.insert(window.processIdentifier);
    }
    return processes;
}

} // namespace

void WorkspaceController::publishAssignments() {
    keepFloatingValid();
    state_.assignedWindowIDs.set(assignments_.assignedWindowIDs);
    state_.stackWindowIDsByTarget.set(assignments_.stackWindowIDsByTarget);
    noteTileGeometry();
}

/// Overlays and divider handles follow.
void WorkspaceController::noteTilesMoved() {
    state_.layoutRevision.set(*state_.layoutRevision + 1);
}

void WorkspaceController::commit(const Transaction& changes) {
    if (changes.hasMovedTiles) noteTilesMoved();
    if (changes.claimant) claimRoomWhereNeeded(*changes.claimant);
    if (changes.before) bringNextForward(*changes.before);
    publishAssignments();
    reapplyTileFrames(changes.straying);
    services_.accessibility.flush();
}

CGSize WorkspaceController::minimumSizeOf(const ManagedWindow& window, WindowSizes::Purpose purpose) const {
    return frames_.sizes().minimumOf(window, minimumOfApplication(window), purpose);
}

std::optional<CGSize> WorkspaceController::minimumOfApplication(const ManagedWindow& window) const {
    const auto& remembered = state_.profile->applicationMinimumSizes;
    if (remembered.empty()) return std::nullopt;
    const auto found = remembered.find(applicationKey(window.applicationName, window.bundleIdentifier));
    return found == remembered.end() ? std::nullopt : std::optional(found->second);
}

/// Where the window rests in a tile of that frame, in window-service space.
CGRect WorkspaceController::restingFrame(const ManagedWindow& window, const CGRect& tileFrame) const {
    return window.sizeHints ? largestFrameWithin(tileFrame, *window.sizeHints) : tileFrame;
}

TileRoom WorkspaceController::roomOn(const Screen& screen) const {
    std::map<std::string, TileHolder> holders; // by window id
    const std::string id = displayID(screen);
    for (const auto& [target, windowID] : assignments_.assignedWindowIDs) {
        const auto slot = slotIDOn(id, target);
        if (!slot) continue;
        TileHolder& holder = holders[windowID];
        holder.slotIDs.emplace_back(*slot);
        if (assignments_.targetOf(windowID) == target) std::swap(holder.slotIDs.front(), holder.slotIDs.back());
    }
    std::vector<TileHolder> all;
    for (auto& [windowID, holder] : holders) {
        holder.windowID = windowID;
        if (const ManagedWindow* window = findLive(windowID)) holder.minimumSize = minimumSizeOf(*window);
        all.push_back(std::move(holder));
    }
    return {layouts_.resolve(screen, *state_.profile, catalogue()), screen.visibleFrame.size, state_.profile->tileInset,
            std::move(all)};
}

std::optional<WorkspaceController::Covering> WorkspaceController::coveringFor(const ManagedWindow& window,
                                                                              const std::string& targetID) const {
    const Screen* screen = screenOfTarget(targetID);
    if (!screen) return std::nullopt;
    const std::string display = displayID(*screen);
    const std::string slotID(*slotIDOn(display, targetID));
    return coveringOn(*screen, roomOn(*screen).tilesFor(window.id, minimumSizeOf(window), slotID));
}

/// Absent for no slot at all.
std::optional<WorkspaceController::Covering>
WorkspaceController::coveringOn(const Screen& screen, const std::vector<std::string>& slotIDs) const {
    const auto& slots = solvedTiles(screen).slots;
    Covering covering;
    for (const auto& slotID : slotIDs) {
        const auto slot = std::ranges::find(slots, slotID, &TileSlot::id);
        if (slot != slots.end()) covering.targets.push_back({displayID(screen), *slot});
    }
    if (covering.targets.empty()) return std::nullopt;
    return covering;
}

/// Gives the windows that fronted the tiles, each once.
std::vector<std::string> WorkspaceController::takeTiles(const std::string& windowID, const Covering& covering) {
    std::vector<std::string> targetIDs;
    for (const auto& target : covering.targets) targetIDs.push_back(target.id());
    const std::string& anchorID = targetIDs.front();
    tileMemory_.spaces().storeFrom(targetIDs, liveWindows_.all(), assignments_);
    std::map<std::string, std::string> lost; // by the window that is displaced
    for (const auto& target : targetIDs) {
        const auto front = assignments_.assignedWindowIDs.find(target);
        if (front != assignments_.assignedWindowIDs.end()) lost[front->second] = *assignments_.targetOf(front->second);
    }
    assignments_.insertIntoStack(anchorID, windowID, TileAssignments::StackPosition::front);
    auto displaced = assignments_.assign(windowID, targetIDs);
    assignments_.mergeStacksInto(anchorID, targetIDs, displaced);
    tileMemory_.succession().forget(windowID);
    for (const auto& loser : displaced) {
        tileMemory_.succession().noteDisplaced(loser, lost[loser],
                                               assignments_.stackTargetOf(loser).value_or(lost[loser]));
    }
    return displaced;
}

void WorkspaceController::place(const ManagedWindow& window, const Covering& covering, BringToFront raise) {
    presentDisplaced(takeTiles(window.id, covering));
    if (const auto frame = frameForWindow(window.id)) writeFrame(window, *frame, raise);
    if (covering.targets.size() > 1) announceClaim(window, covering);
}

void WorkspaceController::announceClaim(const ManagedWindow& window, const Covering& covering) {
    WindowPlacementNotice notice;
    bool first = true;
    for (const auto& target : covering.targets) {
        const auto cell = tileFrameOnScreen(target.id());
        if (!cell) continue;
        notice.claimedFrame = first ? *cell : unionOf(notice.claimedFrame, *cell);
        first = false;
    }
    notice.additionalTileCount = static_cast<int>(covering.targets.size()) - 1;
    notice.applicationName = window.applicationName;
    state_.placementNotice.set(notice);
}

/// Takes windows that lost their tile off the screen. An application is hidden only when none of its windows stays in a
/// tile and none is on another Space, from which it would vanish as well; otherwise just the window is minimised.
void WorkspaceController::presentDisplaced(const std::vector<std::string>& displacedWindowIDs) {
    if (displacedWindowIDs.empty()) return;
    auto staying = processesInFront(assignments_, liveWindows_.all());
    for (const auto& window : liveWindows_) {
        if (window.isElsewhere) staying.insert(window.processIdentifier);
    }
    std::set<pid_t> leaving; // an application is hidden once, with all its windows
    std::vector<std::pair<ManagedWindow*, DisplacedWindowPresentationAction>> decisions;
    for (const auto& id : displacedWindowIDs) {
        ManagedWindow* window = findLive(id);
        if (!window || window->isFullScreen || window->isElsewhere || window->isMinimized) continue;
        const bool stays = staying.contains(window->processIdentifier);
        const bool isGone = !stays && (!leaving.insert(window->processIdentifier).second ||
                                       windowService_->isApplicationHidden(window->processIdentifier));
        if (isGone) continue;
        decisions.emplace_back(window, stays ? DisplacedWindowPresentationAction::minimizeWindow
                                             : DisplacedWindowPresentationAction::hideApplication);
    }
    for (const auto& [window, action] : decisions) {
        if (action == DisplacedWindowPresentationAction::minimizeWindow) {
            minimizeWindow(*window);
            continue;
        }
        hideApplicationOf(*window);
    }
}

void WorkspaceController::hideApplicationOf(const ManagedWindow& window) {
    windowService_->presentDisplaced(window, DisplacedWindowPresentationAction::hideApplication);
    liveWindows_.requestHidden(window.processIdentifier, services_.queue.uptime());
    refreshCycle_.wake(); // until they are seen so
}

/// All its windows that are not minimized come back.
void WorkspaceController::unhideApplicationOf(const ManagedWindow& window) {
    const bool wasHidden = windowService_->isApplicationHidden(window.processIdentifier);
    windowService_->unhideApplication(window.processIdentifier);
    if (!wasHidden) return;
    liveWindows_.requestShown(window.processIdentifier, services_.queue.uptime());
    refreshCycle_.wake(); // until they are seen so
}

void WorkspaceController::minimizeWindow(const ManagedWindow& window) {
    const bool wasMinimizedByUser = window.isMinimized && !liveWindows_.minimized().contains(window.id);
    if (!wasMinimizedByUser) liveWindows_.minimized().note(window.id, services_.queue.uptime());
    windowService_->presentDisplaced(window, DisplacedWindowPresentationAction::minimizeWindow);
    requestPresentation(window.id, WindowPresentation::minimized);
}

void WorkspaceController::requestPresentation(const std::string& windowID, WindowPresentation presentation) {
    if (!liveWindows_.request(windowID, presentation, services_.queue.uptime())) return;
    refreshCycle_.wake(); // until the window is seen so
}

/// The live list follows at once, so that a snapshot taken before the next poll does not remember an older picture.
void WorkspaceController::writeFrame(const ManagedWindow& window, const CGRect& frame, BringToFront raise) {
    // A remembered frame can lie where a display was unplugged meanwhile.
    if (window.isFullScreen || !isOnSomeScreen(frame)) return;
    if (window.isElsewhere || !window.isAnswering) return tileMemory_.spaces().owe(window.id, frame);
    const std::string id = window.id;
    windowService_->setFrame(window, frame, raise, lifetime_.guard([this, id, frame](CGRect actual) {
        minimumSizeObserved(id, frame, actual);
    }));
    frames_.noteAsked(id);
    refreshCycle_.wake(); // until the window is seen at its place
    if (ManagedWindow* live = findLive(id)) {
        live->frame = frame;
        // Placing ends it.
        if (live->isMaximized) liveWindows_.requestMaximized(*live, false, services_.queue.uptime());
    }
    moveDialogsAlong(id, frame);
}

void WorkspaceController::moveDialogsAlong(const std::string& windowID, const CGRect& frame) {
    const Screen* screen = screenNearest(*state_.screens, flipped(frame, firstScreenMaxY()));
    if (!screen) return;
    const CGRect visibleArea = flipped(screen->visibleFrame, firstScreenMaxY());
    for (const auto& move : liveWindows_.dialogs().follow(windowID, frame, visibleArea)) {
        windowService_->move(move.dialog, move.origin);
    }
}

void WorkspaceController::reapplyTileFrames(Straying straying) {
    if (*state_.permissionState != AccessibilityPermissionState::granted) return;
    const auto frames = framesOfTiledWindows();
    for (const ManagedWindow& window : liveWindows_) {
        if (pointer_.isPressing(window.id)) continue; // until it is released
        const auto target = frames.find(window.id);
        if (target != frames.end() && !isLeftAlone(window)) {
            reapplyWindow(window, target->second, straying);
            continue;
        }
        frames_.noteWithoutTarget(window);
    }
}

/// Zoomed, minimized, maximized, full-screen and hidden windows, those of other Spaces and of silent applications, and
/// the one that the user drags, keep their tiles and are put there when they come back.
std::optional<LeftAlone> WorkspaceController::whyLeftAlone(const ManagedWindow& window) const {
    return kova::whyLeftAlone(window,
                              {.isZoomed = focusMode_.isZoomed(window.id),
                               .isHeldByPointer = pointer_.isHolding(window.id),
                               .isApplicationHidden = windowService_->isApplicationHidden(window.processIdentifier)});
}

/// Writes the frame of a window that strayed. A placement that is still being verified is left to its passes, and a
/// window that keeps refusing is asked only so many times.
void WorkspaceController::reapplyWindow(const ManagedWindow& window, const CGRect& target, Straying straying) {
    const auto decision = frames_.decide(window, target, straying, windowService_->pendingFrame(window.id));
    if (decision == FrameKeeper::Decision::leave) return;
    const bool isAgain = decision == FrameKeeper::Decision::askAgain;
    if (isAgain && windowService_->areSizesReliable(window)) frames_.noteAttempt(window.id);
    writeFrame(window, target, BringToFront::no);
}

bool WorkspaceController::placeWindow(const std::string& windowID, const std::string& targetID, Focusing focusing) {
    const ManagedWindow* live = findLive(windowID);
    if (!live) return false;
    const ManagedWindow window = *live;
    const auto covering = coveringFor(window, targetID);
    if (!covering) return false;
    const TileAssignments before = assignments_;
    place(window, *covering, focusing == Focusing::yes ? BringToFront::yes : BringToFront::no);
    commit({.before = before});
    return true;
}

} // namespace kova
