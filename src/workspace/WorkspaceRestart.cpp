// What outlives the agent: the session is kept while it changes, and taken up again at the start.
#include "workspace/WorkspaceController.h"

#include "workspace/DisplaySuccession.h"

#include <cmath>
#include <utility>

namespace kova {

namespace {

constexpr double kRestingTolerancePoints = 2;
/// So long a window may take to come back to its place once its agent has ended: some window managers draw its way, and
/// give it the keyboard at first.
constexpr Seconds kPatienceWithReturn{3};

bool isSamePlace(CGPoint a, CGPoint b) {
    return std::abs(a.x - b.x) <= kRestingTolerancePoints && std::abs(a.y - b.y) <= kRestingTolerancePoints;
}

std::string displayOfTarget(const std::string& targetID) {
    return targetID.substr(0, targetID.find("::"));
}

std::set<std::string> displaysThatDiffer(const std::vector<Screen>& screens, const TileAssignments& before,
                                         const TileAssignments& after) {
    std::set<std::string> ids;
    for (const auto& screen : screens) {
        const std::string id = displayID(screen);
        if (before.onDisplay(id) != after.onDisplay(id)) ids.insert(id);
    }
    return ids;
}

} // namespace

void WorkspaceController::keepSession() {
    session_.emplace(services_.queue, services_.preferences, [this] { return describeSession(); });
    sessionToTakeUp_ = session_->kept();
    const auto watch = [this](const auto& published) {
        sessionSubscriptions_.push_back(published.observe([this](const auto&) { session_->noteChange(); }));
    };
    watch(state_.assignedWindowIDs);
    watch(state_.stackWindowIDsByTarget);
    watch(state_.observedMinimumSizes);
    watch(state_.focusMode);
    watch(state_.floatingWindowIDs);
}

/// Absent while nothing is known of the windows, which is no reason to forget what was.
std::optional<WorkspaceSession> WorkspaceController::describeSession() {
    if (sessionToTakeUp_ || *state_.permissionState != AccessibilityPermissionState::granted) return std::nullopt;
    WorkspaceSession session;
    session.tiles = sessionTiles(assignments_);
    for (const auto& [id, held] : absence_.homes()) session.awayDisplays[id] = sessionTiles(held);
    for (const auto& [space, tiles] : spaces_.places()) session.otherSpaces.push_back({space, sessionTiles(tiles)});
    std::map<pid_t, std::optional<std::string>> starts;
    const auto minimums = sizes_.confirmed();
    for (const auto& window : liveWindows_) {
        const bool isHandled = handledRuleWindowIDs_.contains(window.id);
        if (isHandled) session.handledRuleWindowIDs.insert(window.id);
        const bool isFloating = state_.floatingWindowIDs->contains(window.id);
        if (isFloating) session.floatingWindowIDs.insert(window.id);
        const bool isSurplus = minimizedWindows_.contains(window.id) && !assignments_.isInAnyTile(window.id);
        const bool hasPlace = assignments_.isInAnyTile(window.id) || absence_.isHomeless(window.id) ||
                              spaces_.holds(window.id);
        if (!isHandled && !isFloating && !hasPlace && !isSurplus) continue;
        const auto [start, isNew] = starts.try_emplace(window.processIdentifier);
        if (isNew) {
            // A process that has a window goes on; reading again what tells it from others would cost a file each.
            const auto known = processStarts_.find(window.processIdentifier);
            start->second = known != processStarts_.end()
                                ? known->second
                                : services_.applications.processStartIdentity(window.processIdentifier);
        }
        WorkspaceSessionWindow kept{
            window.id,   window.processIdentifier, start->second, window.bundleIdentifier, window.title, window.frame,
            std::nullopt};
        kept.isSurplus = isSurplus;
        const auto comingBack = comingBack_.find(window.id);
        if (comingBack != comingBack_.end()) kept.frame = comingBack->second;
        kept.isPutAway = (!window.isVisible || comingBack != comingBack_.end()) &&
                         !assignments_.isAssigned(window.id) && assignments_.isInAnyTile(window.id);
        const auto minimum = minimums.find(window.id);
        if (minimum != minimums.end()) kept.observedMinimumSize = minimum->second;
        session.windows.push_back(std::move(kept));
    }
    processStarts_ = std::move(starts);
    if (const auto& zoomed = *state_.focusMode; zoomed && focusZoomSnapshot_) {
        session.zoom = WorkspaceSessionZoom{zoomed->displayID, zoomed->anchorTargetID, zoomed->windowID, std::nullopt};
        const auto before = focusZoomSnapshot_->windowFrames.find(zoomed->windowID);
        if (before != focusZoomSnapshot_->windowFrames.end()) session.zoom->frameBefore = before->second;
    }
    return session;
}

/// With the first picture of the desktop. True when some window was known again.
bool WorkspaceController::takeUpSession() {
    if (std::exchange(hasFirstPicture_, true)) return false;
    const WorkspaceSession session = std::exchange(sessionToTakeUp_, std::nullopt).value_or(WorkspaceSession{});
    const auto resumed = resumedWindows(
        session, liveWindows_, [this](pid_t process) { return services_.applications.processStartIdentity(process); });
    const bool knowsAny = !resumed.idNow.empty();
    services_.applications.settleHiddenWindows(knowsAny ? LeftWindows::stayHidden : LeftWindows::comeBack);
    if (resumed.idNow.empty() && resumed.awaited.empty()) return false;

    assignments_ = resumedTiles(session.tiles, resumed);
    std::map<std::string, TileAssignments> homes;
    for (const auto& [id, tiles] : session.awayDisplays) {
        auto held = resumedTiles(tiles, resumed);
        if (held != TileAssignments{}) homes[id] = std::move(held);
    }
    absence_.restore(std::move(homes));
    std::vector<SpaceMemory::Places> places;
    for (const auto& [space, tiles] : session.otherSpaces) {
        auto held = resumedTiles(tiles, resumed);
        if (held != TileAssignments{}) places.push_back({space, std::move(held)});
    }
    spaces_.setPlaces(std::move(places));
    awaitedOfSession_ = resumed.awaited;
    awaitedOfSessionUntil_ = services_.queue.uptime() + kResumptionPatience;
    for (const auto& window : session.windows) {
        const auto now = resumed.idNow.find(window.id);
        if (now == resumed.idNow.end()) continue;
        if (window.observedMinimumSize) sizes_.restore(now->second, *window.observedMinimumSize);
        if (session.handledRuleWindowIDs.contains(window.id) || assignments_.isInAnyTile(now->second)) {
            noteHasItsPlace(now->second);
        }
    }
    publishMinimums();
    std::set<std::string> floating;
    for (const auto& id : session.floatingWindowIDs) {
        if (const auto now = resumed.idNow.find(id); now != resumed.idNow.end()) floating.insert(now->second);
    }
    state_.floatingWindowIDs.set(std::move(floating));
    // Displays that are there now and were away then, and the other way round.
    std::set<std::string> returned;
    for (const auto& screen : *state_.screens) {
        const std::string id = displayID(screen);
        if (!absence_.holds(id)) continue;
        returned.insert(id);
        takeBack(absence_, id);
    }
    for (const auto& id : takeUpResizedDisplays()) returned.insert(id);
    for (const auto& [target, windowID] : session.tiles.assignedWindowIDs) {
        const std::string id = displayOfTarget(target);
        if (screenOf(id) || absence_.holds(id)) continue;
        absence_.leave(id, id, assignments_);
        awaitStableDisplays();
    }
    const TileAssignments known = assignments_;
    migrateChangedDisplays();
    const auto changed = displaysThatDiffer(*state_.screens, known, assignments_);
    returned.insert(changed.begin(), changed.end());
    acceptPlacesOfWindows(returned);
    presentRegained();
    for (const auto& former : session.windows) {
        const auto now = resumed.idNow.find(former.id);
        if (former.isPutAway && now != resumed.idNow.end()) comingBack_[now->second] = former.frame;
    }
    comingBackUntil_ = services_.queue.uptime() + kPatienceWithReturn;
    for (const auto& former : session.windows) {
        const auto now = resumed.idNow.find(former.id);
        if (former.isSurplus && now != resumed.idNow.end()) {
            minimizedWindows_.expectBack(now->second, former.frame, comingBackUntil_);
        }
    }
    putAwayAgain();
    if (session.zoom && !changed.contains(session.zoom->displayID)) takeUpZoom(*session.zoom, resumed);
    return knowsAny;
}

/// Displays that have another size, and hence another name, than they had for the agent before this one; by their names
/// of now.
std::set<std::string> WorkspaceController::takeUpResizedDisplays() {
    std::set<std::string> gone, come;
    for (const auto& [target, window] : assignments_.assignedWindowIDs) {
        const std::string id = displayOfTarget(target);
        if (!screenOf(id) && !absence_.holds(id)) gone.insert(id);
    }
    for (const auto& screen : *state_.screens) {
        const std::string id = displayID(screen);
        if (assignments_.onDisplay(id) == TileAssignments{}) come.insert(id);
    }
    std::set<std::string> resized;
    for (const auto& [formerID, newID] : successorsOfDisplays(gone, come)) {
        displayHasNewID(formerID, newID);
        resized.insert(newID);
    }
    return resized;
}

/// Where windows are now is where they rest, though it may not be quite their tile: some keep to cells or sizes of
/// their own, and a new start is no reason to move anything. The return of a display is one.
void WorkspaceController::acceptPlacesOfWindows(const std::set<std::string>& returnedDisplayIDs) {
    for (const auto& [windowID, target] : framesOfTiledWindows()) {
        const auto tile = assignments_.targetOf(windowID);
        if (tile && returnedDisplayIDs.contains(displayOfTarget(*tile))) continue;
        const ManagedWindow* window = findLive(windowID);
        if (window && window->frame && *window->frame != target) {
            refusals_[windowID] = {target, *window->frame, kPlacementAttempts, false, true};
        }
    }
}

/// An agent that ends in peace brings back whoever waits; those go on waiting now, unless somebody has taken to one
/// meanwhile: who works in it or has moved it, or has closed what it waited behind. One that is on its way back looks
/// the same at first, which is why a look decides only in favour of going.
void WorkspaceController::putAwayAgain() {
    if (minimizedWindows_.isExpecting()) {
        const ManagedWindow* focused = focusedWindow();
        const auto inUse = focused ? std::optional(focused->id) : std::nullopt;
        for (const auto& id : minimizedWindows_.takeReturned(liveWindows_, inUse, services_.queue.uptime())) {
            if (!assignments_.isInAnyTile(id)) minimizeWindow(ManagedWindow(*findLive(id)));
        }
    }
    if (comingBack_.empty()) return;
    const bool isLastLook = services_.queue.uptime() >= comingBackUntil_;
    std::erase_if(comingBack_, [this](const auto& entry) {
        return !findLive(entry.first) || assignments_.isAssigned(entry.first) ||
               !assignments_.stackTargetOf(entry.first);
    });
    std::set<std::string> leaving;
    std::set<pid_t> undecided; // an application goes as a whole
    for (const auto& [id, former] : comingBack_) {
        const ManagedWindow& window = *findLive(id);
        if (hasComeBackToWait(window, former)) {
            leaving.insert(id);
        } else if (window.isVisible && !isLastLook) {
            undecided.insert(window.processIdentifier);
        }
    }
    std::erase_if(leaving, [&](const auto& id) { return undecided.contains(findLive(id)->processIdentifier); });
    if (isLastLook) {
        comingBack_.clear();
    } else {
        for (const auto& id : leaving) comingBack_.erase(id);
    }
    // An application that has something else to show is not hidden.
    std::set<pid_t> staying;
    for (const auto& window : liveWindows_) {
        if (window.isVisible && !leaving.contains(window.id)) staying.insert(window.processIdentifier);
    }
    std::vector<std::string> displaced;
    for (const auto& id : leaving) {
        const ManagedWindow window = *findLive(id);
        if (staying.contains(window.processIdentifier)) {
            minimizeWindow(window);
        } else {
            displaced.push_back(id);
        }
    }
    presentDisplaced(displaced);
}

/// Whether the window stands where it waits, or did, behind somebody who can be seen.
bool WorkspaceController::hasComeBackToWait(const ManagedWindow& window, const std::optional<CGRect>& formerFrame) {
    const auto tile = assignments_.stackTargetOf(window.id);
    if (!window.isVisible || &window == focusedWindow() || !tile || !screenOfTarget(*tile)) return false;
    const auto front = assignments_.assignedWindowIDs.find(*tile);
    const ManagedWindow* inFront = front == assignments_.assignedWindowIDs.end() ? nullptr : findLive(front->second);
    if (!inFront || !inFront->isVisible) return false;
    if (!window.frame) return true;
    // What was read of it while it was off the screen may not be where it comes back.
    const auto place = frameForWindow(inFront->id);
    return (place && isSamePlace(window.frame->origin, place->origin)) ||
           (formerFrame && nearlyEqual(*window.frame, *formerFrame, kRestingTolerancePoints));
}

void WorkspaceController::takeUpZoom(const WorkspaceSessionZoom& zoom, const ResumedWindows& resumed) {
    const auto now = resumed.idNow.find(zoom.windowID);
    if (now == resumed.idNow.end() || !screenOf(zoom.displayID)) return;
    focusZoomSnapshot_ = captureUndoSnapshot();
    historyBeforeFocusMode_ = undo_.entries();
    const auto before = zoom.frameBefore ? zoom.frameBefore : frameForWindow(now->second);
    if (before) focusZoomSnapshot_->windowFrames[now->second] = *before;
    state_.focusMode.set(WorkspaceFocusMode{zoom.displayID, zoom.anchorTargetID, now->second});
}

/// Windows that are not seen but may yet be.
std::set<std::string> WorkspaceController::sparedWindowIDs() {
    std::set<std::string> spared;
    if (recovery_.hasDeadline()) spared = recovery_.awaitedWindowIDs();
    if (awaitedOfSession_.empty()) return spared;
    std::erase_if(awaitedOfSession_, [this](const auto& id) { return findLive(id) != nullptr; });
    if (services_.queue.uptime() >= awaitedOfSessionUntil_) awaitedOfSession_.clear();
    spared.insert(awaitedOfSession_.begin(), awaitedOfSession_.end());
    return spared;
}

} // namespace kova
