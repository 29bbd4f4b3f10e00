#include "workspace/SessionRecorder.h"

#include "support/SameFrame.h"
#include "workspace/DisplayRenaming.h"
#include "workspace/WorkspaceParts.h"

#include <utility>

namespace kova {

namespace {

std::set<DisplayID> displaysThatDiffer(const std::vector<Screen>& screens, const TileAssignments& before,
                                       const TileAssignments& after) {
    std::set<DisplayID> ids;
    for (const auto& screen : screens) {
        const DisplayID id = displayID(screen);
        if (before.onDisplay(id) != after.onDisplay(id)) ids.insert(id);
    }
    return ids;
}

} // namespace

SessionRecorder::SessionRecorder(WorkspaceParts& parts, TileGeometry& geometry, const WindowFinder& finder,
                                 WindowPresenter& presenter, TileKeeper& keeper, LayoutFollower& follower,
                                 UndoSteps& steps, DisplayChanges& displayChanges) :
    services_(parts.services),
    state_(parts.state), liveWindows_(parts.liveWindows), assignments_(parts.assignments),
    tileMemory_(parts.tileMemory), displays_(parts.displays), focusMode_(parts.focusMode), floating_(parts.floating),
    frames_(parts.frames), recovery_(parts.recovery), session_(parts.session), geometry_(geometry), finder_(finder),
    presenter_(presenter), keeper_(keeper), follower_(follower), steps_(steps), displayChanges_(displayChanges) {}

/// Absent until the stored session was restored or dropped, and without permission: the stored session must not be
/// overwritten then.
std::optional<WorkspaceSession> SessionRecorder::describeSession() {
    if (session_.isUnread() || *state_.permissionState != AccessibilityPermissionState::granted) return std::nullopt;
    WorkspaceSession session;
    session.tiles = sessionTiles(assignments_);
    for (const auto& [absent, held] : displays_.disconnectedDisplays()) {
        session.disconnectedDisplays[absent.displayID] = sessionTiles(held);
    }
    for (const auto& [space, tiles] : tileMemory_.spaces().places())
        session.otherSpaces.push_back({space, sessionTiles(tiles)});
    std::set<pid_t> recorded;
    const auto minimums = frames_.sizes().confirmed();
    for (const auto& window : liveWindows_) {
        const bool isHandled = tileMemory_.isHandledByRules(window.id);
        if (isHandled) session.handledRuleWindowIDs.insert(window.id);
        const bool isFloating = floating_.contains(window.id);
        if (isFloating) session.floatingWindowIDs.insert(window.id);
        const bool isSurplus =
            window.isMinimized && liveWindows_.minimized().contains(window.id) && !assignments_.isInAnyTile(window.id);
        const bool hasPlace = assignments_.isInAnyTile(window.id) ||
                              displays_.belongsToDisconnectedDisplay(window.id) ||
                              tileMemory_.spaces().holds(window.id);
        if (!isHandled && !isFloating && !hasPlace && !isSurplus) continue;
        recorded.insert(window.processIdentifier);
        auto kept = sessionWindow(window, minimums);
        kept.isSurplus = isSurplus;
        session.windows.push_back(std::move(kept));
    }
    session_.keepProcesses(recorded);
    if (const auto* before = focusMode_.snapshot()) {
        const WorkspaceFocusMode& zoomed = *focusMode_.mode();
        session.zoom = WorkspaceSessionZoom{zoomed.displayID, zoomed.anchor, zoomed.windowID, std::nullopt};
        const auto frame = before->windowFrames.find(zoomed.windowID);
        if (frame != before->windowFrames.end()) session.zoom->frameBefore = frame->second;
    }
    return session;
}

WorkspaceSessionWindow SessionRecorder::sessionWindow(const ManagedWindow& window,
                                                      const std::map<WindowID, CGSize>& minimums) {
    WorkspaceSessionWindow kept{
        .id = window.id,
        .processIdentifier = window.processIdentifier,
        .processStart = session_.processStart(
            window.processIdentifier,
            [this](pid_t process) { return services_.applications.processStartIdentity(process); }),
        .bundleIdentifier = window.bundleIdentifier,
        .title = window.title,
        .frame = window.frame};
    const bool isReturning = session_.isReturning(window.id);
    if (isReturning) kept.frame = session_.formerFrame(window.id);
    kept.isHiddenInStack = (!window.isVisible || isReturning) && !assignments_.isAssigned(window.id) &&
                           assignments_.isInAnyTile(window.id);
    const auto minimum = minimums.find(window.id);
    if (minimum != minimums.end()) kept.observedMinimumSize = minimum->second;
    return kept;
}

/// Only the first call has an effect. True if any window was recognized.
bool SessionRecorder::restoreSession() {
    const auto session = session_.takeStored();
    if (!session) return false;
    const auto resumed = resumedWindows(*session, liveWindows_.all(), [this](pid_t process) {
        return services_.applications.processStartIdentity(process);
    });
    const bool knowsAny = !resumed.idNow.empty();
    services_.applications.resolveLeftoverHiddenWindows(knowsAny ? LeftoverWindows::stayHidden : LeftoverWindows::show);
    if (resumed.idNow.empty() && resumed.awaited.empty()) return false;

    restoreTiles(*session, resumed);
    auto returned = restoreDisplays(*session);
    const TileAssignments known = assignments_;
    follower_.migrateChangedDisplays();
    keeper_.commit({.correctedDrift = kNoCorrection});
    const auto changed = displaysThatDiffer(*state_.screens, known, assignments_);
    returned.insert(changed.begin(), changed.end());
    acceptPlacesOfWindows(returned);
    follower_.presentReturnedWindows();
    expectReturns(*session, resumed);
    hideStackedWindowsAgain();
    if (session->zoom && !changed.contains(session->zoom->displayID)) steps_.resumeFocusMode(*session->zoom, resumed);
    return knowsAny;
}

/// Restores which window is in which tile, on connected and disconnected displays and on other Spaces, and the
/// other records of the windows.
void SessionRecorder::restoreTiles(const WorkspaceSession& session, const ResumedWindows& resumed) {
    assignments_ = resumedTiles(session.tiles, resumed);
    std::map<AbsenceKey, TileAssignments> rememberedTiles;
    for (const auto& [id, tiles] : session.disconnectedDisplays) {
        auto held = resumedTiles(tiles, resumed);
        if (held != TileAssignments{}) rememberedTiles[{id}] = std::move(held);
    }
    displays_.restoreDisconnectedDisplays(std::move(rememberedTiles));
    std::vector<SpaceMemory::Places> places;
    for (const auto& [space, tiles] : session.otherSpaces) {
        auto held = resumedTiles(tiles, resumed);
        if (held != TileAssignments{}) places.push_back({space, std::move(held)});
    }
    tileMemory_.setPlacesOnSpaces(std::move(places));
    session_.await(resumed.awaited, services_.queue.uptime());
    for (const auto& window : session.windows) {
        const auto now = resumed.idNow.find(window.id);
        if (now == resumed.idNow.end()) continue;
        if (window.observedMinimumSize) frames_.restoreMinimum(now->second, *window.observedMinimumSize);
        if (session.handledRuleWindowIDs.contains(window.id) || assignments_.isInAnyTile(now->second)) {
            keeper_.exemptFromRules(now->second);
        }
    }
    keeper_.publishMinimums();
    std::set<WindowID> floating;
    for (const auto& id : session.floatingWindowIDs) {
        if (const auto now = resumed.idNow.find(id); now != resumed.idNow.end()) floating.insert(now->second);
    }
    floating_.restore(std::move(floating));
}

/// Handles displays that were connected or disconnected since the session was stored. Returns those that were
/// connected.
std::set<DisplayID> SessionRecorder::restoreDisplays(const WorkspaceSession& session) {
    std::set<DisplayID> returned;
    for (const auto& screen : *state_.screens) {
        const DisplayID id = displayID(screen);
        if (!displays_.remembersDisplay(id)) continue;
        returned.insert(id);
        displays_.returnWindowsToDisplay(id, assignments_);
    }
    for (const auto& id : restoreResizedDisplays()) returned.insert(id);
    for (const auto& [target, windowID] : session.tiles.assignedWindowIDs) {
        const DisplayID& id = target.display;
        if (geometry_.screenOf(id) || displays_.remembersDisplay(id)) continue;
        displays_.rememberDisplay(id, assignments_);
        displays_.beginSettling();
    }
    return returned;
}

/// Records windows that were stacked or surplus: the former agent showed them when it ended, so they are hidden again.
void SessionRecorder::expectReturns(const WorkspaceSession& session, const ResumedWindows& resumed) {
    const Seconds deadline = session_.beginReturns(services_.queue.uptime());
    for (const auto& former : session.windows) {
        const auto now = resumed.idNow.find(former.id);
        if (now == resumed.idNow.end()) continue;
        if (former.isHiddenInStack) session_.expectReturn(now->second, former.frame);
        if (former.isSurplus) liveWindows_.expectMinimizedBack(now->second, former.frame, deadline);
    }
}

/// Handles displays whose size, and therefore id, has changed since the session was stored. Returns the present ids.
std::set<DisplayID> SessionRecorder::restoreResizedDisplays() {
    std::set<DisplayID> missing, added;
    for (const auto& [target, window] : assignments_.assignedWindowIDs) {
        const DisplayID& id = target.display;
        if (!geometry_.screenOf(id) && !displays_.remembersDisplay(id)) missing.insert(id);
    }
    for (const auto& screen : *state_.screens) {
        const DisplayID id = displayID(screen);
        if (assignments_.onDisplay(id) == TileAssignments{}) added.insert(id);
    }
    std::set<DisplayID> resized;
    for (const auto& [formerID, newID] : matchRenamedDisplays(missing, added)) {
        displayChanges_.displayHasNewID(formerID, newID);
        resized.insert(newID);
    }
    return resized;
}

/// Accepts the present frames, because a restart must not move windows: some windows round their size to whole
/// increments. Leaves out windows on displays that were connected meanwhile, so that these windows are placed.
void SessionRecorder::acceptPlacesOfWindows(const std::set<DisplayID>& returnedDisplayIDs) {
    for (const auto& [windowID, target] : geometry_.framesOfTiledWindows()) {
        const auto tile = assignments_.targetOf(windowID);
        if (tile && returnedDisplayIDs.contains(tile->display)) continue;
        const ManagedWindow* window = liveWindows_.find(windowID);
        if (window && window->frame && *window->frame != target) {
            frames_.accept(windowID, target, *window->frame);
        }
    }
}

/// A window manager that starts anew may show windows that KOVA had hidden under the former one. They are hidden again.
void SessionRecorder::followWindowManager() {
    const auto changes = services_.accessibility.windowManagerChanges();
    if (std::exchange(windowManagerChanges_, changes).value_or(changes) == changes) return;
    const Seconds deadline = session_.beginReturns(services_.queue.uptime());
    for (const auto& window : liveWindows_) {
        if (assignments_.isAssigned(window.id)) continue;
        if (assignments_.isInAnyTile(window.id)) {
            session_.expectReturn(window.id, window.frame);
        } else if (liveWindows_.minimized().contains(window.id)) {
            liveWindows_.expectMinimizedBack(window.id, window.frame, deadline);
        }
    }
}

/// The former agent, or a change of the window manager, showed stacked and surplus windows. Hides them again, except
/// windows that are focused or were moved, and stacked windows whose front window is not visible. A window that the
/// desktop is still restoring may look minimized at first, so this function never shows a window.
void SessionRecorder::hideStackedWindowsAgain() {
    if (liveWindows_.minimized().isExpecting()) {
        const ManagedWindow* focused = finder_.focusedWindow();
        const auto inUse = focused ? std::optional(focused->id) : std::nullopt;
        for (const auto& id : liveWindows_.takeMinimizedReturned(inUse, services_.queue.uptime())) {
            if (!assignments_.isInAnyTile(id)) presenter_.minimizeWindow(ManagedWindow(*liveWindows_.find(id)));
        }
    }
    if (!session_.hasReturns()) return;
    const auto isStacked = [this](const WindowID& id) {
        return !assignments_.isAssigned(id) && assignments_.stackTargetOf(id);
    };
    const auto hasReturned = [this](const ManagedWindow& window, const std::optional<CGRect>& former) {
        return isBackBehindFront(window, former);
    };
    const auto leaving = session_.takeReturned(liveWindows_.all(), isStacked, hasReturned, services_.queue.uptime());
    // Applications with another visible window are not hidden.
    std::set<pid_t> staying;
    for (const auto& window : liveWindows_) {
        if (window.isVisible && !leaving.contains(window.id)) staying.insert(window.processIdentifier);
    }
    std::vector<WindowID> displaced;
    for (const auto& id : leaving) {
        const ManagedWindow window = *liveWindows_.find(id);
        if (staying.contains(window.processIdentifier)) {
            presenter_.minimizeWindow(window);
        } else {
            displaced.push_back(id);
        }
    }
    presenter_.hideDisplaced(displaced);
}

/// Whether the window is visible, not focused, behind a visible front window, and in place: its origin is that of the
/// front window's tiles, or its frame is `formerFrame`. A window whose frame is unknown counts as in place.
bool SessionRecorder::isBackBehindFront(const ManagedWindow& window, const std::optional<CGRect>& formerFrame) const {
    const auto tile = assignments_.stackTargetOf(window.id);
    if (!window.isVisible || &window == finder_.focusedWindow() || !tile || !geometry_.screenOfTarget(*tile))
        return false;
    const auto front = assignments_.assignedWindowIDs.find(*tile);
    const ManagedWindow* inFront =
        front == assignments_.assignedWindowIDs.end() ? nullptr : liveWindows_.find(front->second);
    if (!inFront || !inFront->isVisible) return false;
    if (!window.frame) return true;
    // The frame that was read while the window was hidden may differ from the frame at which it appears.
    const auto place = geometry_.frameForWindow(inFront->id);
    return (place && isSamePlace(window.frame->origin, place->origin)) ||
           (formerFrame && nearlyEqual(*window.frame, *formerFrame, kFrameTolerancePoints));
}

/// Ids of windows that the last poll did not list, and that may still appear.
std::set<WindowID> SessionRecorder::unlistedButExpectedWindowIDs() {
    std::set<WindowID> expected;
    if (recovery_.hasDeadline()) expected = recovery_.awaitedWindowIDs();
    const auto& awaited = session_.awaited(liveWindows_.all(), services_.queue.uptime());
    expected.insert(awaited.begin(), awaited.end());
    return expected;
}

} // namespace kova
