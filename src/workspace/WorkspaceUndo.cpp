// Stepping back, and giving one window the whole display.
#include "workspace/WorkspaceController.h"

#include "persistence/PreferenceKeys.h"
#include "workspace/WorkspacePreferences.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace kova {

namespace {

constexpr std::string_view kZoomLayoutID = "jarvis.focus-single";

} // namespace

WorkspaceUndoSnapshot WorkspaceController::captureUndoSnapshot() const {
    WorkspaceUndoSnapshot snapshot{.tiles = assignments_,
                                   .spaces = tileMemory_.spaces(),
                                   .windowFrames = {},
                                   .minimizedWindowIDs = {},
                                   .maximizedWindowIDs = {},
                                   .visibleWindowIDs = {},
                                   .hiddenProcessIdentifiers = {},
                                   .floatingWindowIDs = *state_.floatingWindowIDs,
                                   .activeSceneID = *state_.activeSceneID,
                                   .profile = *state_.profile,
                                   .accentColorID = *state_.accentColorID,
                                   .layoutHomes = tileMemory_.homes(),
                                   .learning = arranger_.learning()};
    for (const auto& window : liveWindows_) {
        // A frame on its way counts as reached: what was last read may be older than what was last asked for.
        const auto pending = windowService_->pendingFrame(window.id);
        if (pending || window.frame) snapshot.windowFrames[window.id] = pending ? *pending : *window.frame;
        if (window.isMinimized) snapshot.minimizedWindowIDs.insert(window.id);
        if (window.isMaximized) snapshot.maximizedWindowIDs.insert(window.id);
        if (window.isVisible) snapshot.visibleWindowIDs.insert(window.id);
        if (windowService_->isApplicationHidden(window.processIdentifier)) {
            snapshot.hiddenProcessIdentifiers.insert(window.processIdentifier);
        }
    }
    return snapshot;
}

void WorkspaceController::pushUndoSnapshot(UndoLabel label, std::optional<WorkspaceUndoSnapshot> snapshot) {
    if (!snapshot) {
        endDrags();
        closeFocusMode();
    }
    (void)focusMode_.leave();
    undo_.push({snapshot ? std::move(*snapshot) : captureUndoSnapshot(), std::move(label), services_.queue.now()});
    state_.canUndo.set(true);
}

std::vector<std::string> WorkspaceController::applicationsOn(const std::optional<std::string>& wanted) const {
    std::vector<std::string> names;
    for (const auto& window : liveWindows_) {
        const auto target = assignments_.targetOf(window.id);
        const bool isThere = !wanted || (target && slotIDOn(*wanted, *target));
        if (isThere && std::find(names.begin(), names.end(), window.applicationName) == names.end()) {
            names.push_back(window.applicationName);
        }
    }
    return names;
}

Outcome WorkspaceController::undoLastAction() {
    if (undo_.isEmpty()) return refuseSilently("There is nothing to undo");
    if (const auto access = requireWindowAccess(); !access) return access;
    endDrags();
    const auto entry = undo_.takeNewest();
    // What happened beside the zoomed window is known to the snapshot of focus mode alone.
    auto zoomed = focusMode_.leave();
    const WorkspaceUndoSnapshot snapshot = zoomed ? std::move(zoomed->snapshot) : entry->snapshot;
    if (zoomed) undo_.restore(zoomed->history);
    (void)arranger_.supersede(); // what an arrangement still had to do is undone with it
    frames_.reflow().forgetAllPushes();
    if (entry->label.action == action::ActivateScene::kTraits.undoLabel) { // and so is what a scene still waits for
        publishSceneReport(SceneReport::State::abandoned);
        awaited_.scene() = {};
    }
    restoreUndoSnapshot(snapshot);
    noteTileGeometry();
    migrateChangedDisplays(); // some may have had another size then
    if (!displays_.isSettling()) placeHomelessWindows();
    if (assignments_.assignedWindowIDs != snapshot.tiles.assignedWindowIDs) commit({});
    state_.canUndo.set(!undo_.isEmpty());
    return done("Last window action undone");
}

void WorkspaceController::restoreUndoSnapshot(const WorkspaceUndoSnapshot& snapshot) {
    assignments_ = snapshot.tiles;
    tileMemory_.spaces() = snapshot.spaces; // of another Space, perhaps
    const bool isAnotherSpace = tileMemory_.spaces().restore(liveWindows_.all(), liveWindows_.shownSpace(),
                                                             SpaceChange::possible, assignments_);
    displays_.restate(assignments_);
    state_.floatingWindowIDs.set(snapshot.floatingWindowIDs);
    std::set<std::string> connected;
    for (const auto& screen : *state_.screens) connected.insert(displayID(screen));
    // What a step back assigns to a display that is not connected counts as held by it.
    displays_.leaveAbsentDisplays(assignments_, connected);
    // Without a look at the tiles: what the displays showed before may still have to be compared with what they show
    // now.
    state_.assignedWindowIDs.set(assignments_.assignedWindowIDs);
    state_.stackWindowIDsByTarget.set(assignments_.stackWindowIDsByTarget);
    WorkspaceProfile profile = snapshot.profile;
    profile.autoArrangeOnLaunch = state_.profile->autoArrangeOnLaunch; // settings that no step has changed
    profile.preferredApplications = state_.profile->preferredApplications;
    state_.profile.set(std::move(profile));
    saveProfile(services_.preferences, *state_.profile);
    state_.accentColorID.set(snapshot.accentColorID);
    services_.preferences.setValue(preferenceKey::accentColor, snapshot.accentColorID);
    restoreActiveScene(snapshot.activeSceneID);
    tileMemory_.homes() = snapshot.layoutHomes;
    if (snapshot.learning) arranger_.setLearning(snapshot.learning);
    layouts_.invalidateAll();
    if (isAnotherSpace) migrateFromMissingTiles(); // its windows were last placed with the layout of that time
    noteTilesMoved();
    for (ManagedWindow& window : liveWindows_) restoreWindow(window, snapshot);
    hideAsIn(snapshot); // last, so that a window minimized beside its hidden application does not count as hidden
    refresh();
}

void WorkspaceController::restoreWindow(ManagedWindow& window, const WorkspaceUndoSnapshot& snapshot) {
    const bool wasVisible = snapshot.visibleWindowIDs.contains(window.id);
    const bool wasHidden = snapshot.hiddenProcessIdentifiers.contains(window.processIdentifier);
    const auto frame = snapshot.windowFrames.find(window.id);
    if (window.isElsewhere) {
        if (frame != snapshot.windowFrames.end()) tileMemory_.spaces().owe(window.id, frame->second);
        return;
    }
    if (wasVisible || (snapshot.knows(window.id) && !wasHidden)) unhideApplicationOf(window);
    if (snapshot.minimizedWindowIDs.contains(window.id)) {
        minimizeWindow(window);
    } else {
        windowService_->unminimize(window);
        if (wasVisible || (window.isMinimized && !wasHidden)) {
            requestPresentation(window.id, WindowPresentation::shown);
        }
        window.isMinimized = false;
    }
    if (snapshot.maximizedWindowIDs.contains(window.id)) {
        if (window.isMaximized) return;
        windowService_->maximize(window);
        liveWindows_.requestMaximized(window, true, services_.queue.uptime());
    } else if (frame != snapshot.windowFrames.end()) {
        writeFrame(window, frame->second, AccessibilityWindowService::BringToFront::no);
    }
}

/// Hiding an application takes all its windows along. Where one was opened since the snapshot, those that were hidden
/// are minimized instead.
void WorkspaceController::hideAsIn(const WorkspaceUndoSnapshot& snapshot) {
    std::set<pid_t> withNewWindows;
    for (const ManagedWindow& window : liveWindows_) {
        if (!snapshot.knows(window.id)) withNewWindows.insert(window.processIdentifier);
    }
    std::set<pid_t> hidden;
    for (const ManagedWindow& window : liveWindows_) {
        const pid_t process = window.processIdentifier;
        if (!snapshot.hiddenProcessIdentifiers.contains(process) || window.isElsewhere ||
            windowService_->isApplicationHidden(process)) {
            continue;
        }
        if (!withNewWindows.contains(process)) {
            if (hidden.insert(process).second) hideApplicationOf(window);
        } else if (snapshot.knows(window.id) && !snapshot.visibleWindowIDs.contains(window.id)) {
            minimizeWindow(window);
        }
    }
}

std::vector<ManagedWindow> WorkspaceController::windowsAsIn(const WorkspaceUndoSnapshot& snapshot) const {
    std::vector<ManagedWindow> windows = liveWindows_.all();
    for (ManagedWindow& window : windows) {
        window.isMinimized = snapshot.minimizedWindowIDs.contains(window.id);
        window.isVisible = !window.isMinimized && (window.isVisible || snapshot.visibleWindowIDs.contains(window.id));
        const auto frame = snapshot.windowFrames.find(window.id);
        if (frame != snapshot.windowFrames.end() && isOnSomeScreen(frame->second)) window.frame = frame->second;
    }
    return windows;
}

void WorkspaceController::restoreActiveScene(const std::optional<Uuid>& id) {
    const auto known = id && sceneWithID(*id) ? id : std::nullopt; // it may have been deleted since
    if (known == *state_.activeSceneID) return;
    state_.activeSceneID.set(known);
    saveWorkspaceDocument();
}

Outcome WorkspaceController::toggleFocusMode(const std::optional<std::string>& windowID) {
    if (!focusMode_.isOn()) return enterFocusMode(windowID);
    leaveFocusMode();
    return done("Focus Mode closed — workspace restored");
}

/// Any focused window can be zoomed: one without a tile counts as being in the tile under its middle, or the nearest.
std::optional<WorkspaceController::StartingPoint>
WorkspaceController::zoomStartingPoint(const std::optional<std::string>& windowID) const {
    if (const auto start = startingPoint(windowID)) return start;
    const ManagedWindow* window = actingWindow(windowID);
    const Screen* screen = window && window->frame ? screenOfWindow(*window) : nullptr;
    if (!screen) return std::nullopt;
    const std::string display = displayID(*screen);
    const CGPoint middle = centre(flipped(*window->frame, firstScreenMaxY()));
    std::optional<std::string> nearest;
    double best = std::numeric_limits<double>::infinity();
    for (const auto& tile : tiles()) {
        if (tile.displayID != display) continue;
        const CGPoint to = centre(tile.frameOnScreen);
        const double distance =
            containsPoint(tile.frameOnScreen, middle) ? -1 : std::hypot(to.x - middle.x, to.y - middle.y);
        if (distance < best) {
            best = distance;
            nearest = tile.targetID;
        }
    }
    if (!nearest) return std::nullopt;
    return StartingPoint{*window, *nearest, display};
}

std::optional<CGRect> WorkspaceController::zoomFrame(const std::string& id) const {
    const Screen* screen = screenOf(id);
    if (!screen) return std::nullopt;
    const LayoutDefinition* zoom = findLayout(builtInLayouts(), kZoomLayoutID);
    const SolvedLayout solved = solveDefinition(*zoom, {}, screen->visibleFrame.size, state_.profile->tileInset);
    const CGRect cell = kova::tileFrameOnScreen(solved.frames.front(), screen->visibleFrame);
    return flipped(insetBy(cell, state_.profile->tileInset), firstScreenMaxY());
}

Outcome WorkspaceController::enterFocusMode(const std::optional<std::string>& windowID) {
    const auto start = zoomStartingPoint(windowID);
    if (!start) {
        const bool isThere = actingWindow(windowID) != nullptr;
        return refuse(isThere ? "The window lies on no display" : *whyNoStartingPoint(windowID));
    }
    const Screen* screen = screenOf(start->displayID);
    if (!screen) return refuseSilently("The window lies on no display");
    if (layouts_.resolve(*screen, *state_.profile, catalogue()).slots.size() < 2) {
        return refuse("This display already uses a single-pane layout");
    }
    const CGRect frame = restingFrame(start->window, *zoomFrame(start->displayID));

    abandonDrags(); // what the hand began would end as a step behind the focus mode's own
    auto snapshot = captureUndoSnapshot();
    auto history = undo_.entries();
    pushUndoSnapshot({std::string(action::ToggleFocusZoom::kTraits.undoLabel), {start->window.applicationName}},
                     snapshot);
    focusMode_.enter({start->displayID, start->targetID, start->window.id}, {std::move(snapshot), std::move(history)});
    noteTilesMoved();
    writeFrame(start->window, frame, AccessibilityWindowService::BringToFront::yes);
    return done("Focus Mode — " + start->window.applicationName + " owns this display");
}

bool WorkspaceController::leaveFocusMode() {
    auto before = focusMode_.leave();
    if (!before) return false;
    restoreUndoSnapshot(before->snapshot);
    undo_.restore(std::move(before->history));
    state_.canUndo.set(!undo_.isEmpty());
    return true;
}

/// Before every other action; on a screen that nobody sees that is refused, and the zoomed window stays.
void WorkspaceController::closeFocusMode() {
    if (!isAway()) (void)leaveFocusMode();
}

} // namespace kova
