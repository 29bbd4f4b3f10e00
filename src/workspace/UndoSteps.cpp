#include "workspace/UndoSteps.h"

#include "persistence/PreferenceKeys.h"
#include "workspace/WorkspaceParts.h"
#include "workspace/WorkspacePreferences.h"

#include <utility>

namespace kova {

UndoSteps::UndoSteps(WorkspaceParts& parts, RefreshCycle& refreshCycle, WorkspaceAccess& access, TileGeometry& geometry,
                     const WindowFinder& finder, WindowPresenter& presenter, TileKeeper& keeper,
                     DocumentStore& documents, LayoutFollower& follower) :
    services_(parts.services),
    requests_(parts.requests), windowService_(*parts.windowService), state_(parts.state),
    liveWindows_(parts.liveWindows), assignments_(parts.assignments), tileMemory_(parts.tileMemory),
    displays_(parts.displays), undo_(parts.undo), focusMode_(parts.focusMode), floating_(parts.floating),
    pointer_(parts.pointer), arranger_(parts.arranger), refreshCycle_(refreshCycle), access_(access),
    geometry_(geometry), finder_(finder), presenter_(presenter), keeper_(keeper), documents_(documents),
    follower_(follower) {}

/// For the later steps of an arrangement, a launch or a scene. Focus mode ends first, since its snapshot would undo
/// them later.
void UndoSteps::changeLater(const std::function<void()>& change) {
    const RequestBatch::Scope batch(requests_);
    closeFocusMode();
    change();
}

void UndoSteps::abandonDrags() {
    const bool heldPollsBack = pointer_.abandon();
    geometry_.layouts().clearAllTransientWeights();
    state_.dropTarget.set(std::nullopt);
    if (heldPollsBack) refreshCycle_.refresh(); // the paused polls were not applied
}

/// Another action begins: windows and weights return to their state before the drag.
void UndoSteps::endDrags() {
    if (!pointer_.isDragging()) return;
    abandonDrags();
    geometry_.layouts().invalidateAll();
    keeper_.commit({.hasMovedTiles = true});
}

void UndoSteps::resumeFocusMode(const WorkspaceSessionZoom& zoom, const ResumedWindows& resumed) {
    const auto now = resumed.idNow.find(zoom.windowID);
    if (now == resumed.idNow.end() || !geometry_.screenOf(zoom.displayID)) return;
    WorkspaceUndoSnapshot snapshot = captureUndoSnapshot();
    const auto before = zoom.frameBefore ? zoom.frameBefore : geometry_.frameForWindow(now->second);
    if (before) snapshot.windowFrames[now->second] = *before;
    focusMode_.enter({zoom.displayID, zoom.anchor, now->second}, {std::move(snapshot), undo_.entries()});
}

WorkspaceUndoSnapshot UndoSteps::captureUndoSnapshot() const {
    WorkspaceUndoSnapshot snapshot{.tiles = assignments_,
                                   .spaces = tileMemory_.spaces(),
                                   .windowFrames = {},
                                   .minimizedWindowIDs = {},
                                   .maximizedWindowIDs = {},
                                   .visibleWindowIDs = {},
                                   .hiddenProcessIdentifiers = {},
                                   .floatingWindowIDs = floating_.all(),
                                   .activeSceneID = *state_.activeSceneID,
                                   .profile = *state_.profile,
                                   .accentColorID = *state_.accentColorID,
                                   .layoutHomes = tileMemory_.homes(),
                                   .learning = arranger_.learning()};
    for (const auto& window : liveWindows_) {
        // A pending frame takes precedence over the frame last read, which may be older.
        const auto pending = windowService_.pendingFrame(window.id);
        if (pending || window.frame) snapshot.windowFrames[window.id] = pending ? *pending : *window.frame;
        if (window.isMinimized) snapshot.minimizedWindowIDs.insert(window.id);
        if (window.isMaximized) snapshot.maximizedWindowIDs.insert(window.id);
        if (window.isVisible) snapshot.visibleWindowIDs.insert(window.id);
        if (windowService_.isApplicationHidden(window.processIdentifier)) {
            snapshot.hiddenProcessIdentifiers.insert(window.processIdentifier);
        }
    }
    return snapshot;
}

void UndoSteps::pushUndoSnapshot(UndoLabel label, std::optional<WorkspaceUndoSnapshot> snapshot) {
    if (!snapshot) {
        endDrags();
        closeFocusMode();
    }
    (void)focusMode_.leave();
    undo_.push({snapshot ? std::move(*snapshot) : captureUndoSnapshot(), std::move(label), services_.queue.now()});
    state_.canUndo.set(true);
}

void UndoSteps::restoreUndoSnapshot(const WorkspaceUndoSnapshot& snapshot) {
    assignments_ = snapshot.tiles;
    tileMemory_.spaces() = snapshot.spaces; // the snapshot may have been taken on another Space
    const bool isAnotherSpace = tileMemory_.spaces().restore(liveWindows_.all(), liveWindows_.shownSpace(),
                                                             SpaceChange::possible, assignments_);
    displays_.restate(assignments_);
    floating_.restore(snapshot.floatingWindowIDs);
    std::set<DisplayID> connected;
    for (const auto& screen : *state_.screens) connected.insert(displayID(screen));
    // Windows that the snapshot assigns to a disconnected display are remembered for it.
    displays_.leaveAbsentDisplays(assignments_, connected);
    WorkspaceProfile profile = snapshot.profile;
    profile.autoArrangeOnLaunch = state_.profile->autoArrangeOnLaunch; // settings that undo does not cover
    profile.preferredApplications = state_.profile->preferredApplications;
    state_.profile.set(std::move(profile));
    saveProfile(services_.preferences, *state_.profile);
    state_.accentColorID.set(snapshot.accentColorID);
    services_.preferences.setValue(preferenceKey::accentColor, snapshot.accentColorID);
    documents_.restoreActiveScene(snapshot.activeSceneID);
    tileMemory_.homes() = snapshot.layoutHomes;
    if (snapshot.learning) arranger_.setLearning(snapshot.learning);
    geometry_.layouts().invalidateAll();
    if (isAnotherSpace)
        follower_.migrateFromMissingTiles(); // the windows of that Space were placed with an earlier layout
    for (const ManagedWindow& window : liveWindows_) restoreWindow(window, snapshot);
    hideAsIn(snapshot); // last, so that a window minimized beside its hidden application does not count as hidden
    refreshCycle_.refresh();
}

void UndoSteps::restoreWindow(const ManagedWindow& window, const WorkspaceUndoSnapshot& snapshot) {
    const bool wasVisible = snapshot.visibleWindowIDs.contains(window.id);
    const bool wasHidden = snapshot.hiddenProcessIdentifiers.contains(window.processIdentifier);
    const auto frame = snapshot.windowFrames.find(window.id);
    if (window.isElsewhere) {
        if (frame != snapshot.windowFrames.end()) tileMemory_.spaces().setPendingFrame(window.id, frame->second);
        return;
    }
    if (wasVisible || (snapshot.knows(window.id) && !wasHidden)) presenter_.unhideApplicationOf(window);
    if (snapshot.minimizedWindowIDs.contains(window.id)) {
        presenter_.minimizeWindow(window);
    } else {
        windowService_.unminimize(window);
        if (wasVisible || (window.isMinimized && !wasHidden)) {
            presenter_.requestPresentation(window.id, WindowPresentation::shown);
        }
        liveWindows_.noteNotMinimized(window.id);
    }
    if (snapshot.maximizedWindowIDs.contains(window.id)) {
        if (window.isMaximized) return;
        windowService_.maximize(window);
        liveWindows_.requestMaximized(window.id, true, services_.queue.uptime());
    } else if (frame != snapshot.windowFrames.end()) {
        presenter_.writeFrame(window, frame->second, AccessibilityWindowService::BringToFront::no);
    }
}

/// Hiding an application hides all its windows. If one was opened since the snapshot, the windows that were hidden are
/// minimized instead.
void UndoSteps::hideAsIn(const WorkspaceUndoSnapshot& snapshot) {
    std::set<pid_t> withNewWindows;
    for (const ManagedWindow& window : liveWindows_) {
        if (!snapshot.knows(window.id)) withNewWindows.insert(window.processIdentifier);
    }
    std::set<pid_t> hidden;
    for (const ManagedWindow& window : liveWindows_) {
        const pid_t process = window.processIdentifier;
        if (!snapshot.hiddenProcessIdentifiers.contains(process) || window.isElsewhere ||
            windowService_.isApplicationHidden(process)) {
            continue;
        }
        if (!withNewWindows.contains(process)) {
            if (hidden.insert(process).second) presenter_.hideApplicationOf(window);
        } else if (snapshot.knows(window.id) && !snapshot.visibleWindowIDs.contains(window.id)) {
            presenter_.minimizeWindow(window);
        }
    }
}

std::vector<ManagedWindow> UndoSteps::windowsAsIn(const WorkspaceUndoSnapshot& snapshot) const {
    std::vector<ManagedWindow> windows = liveWindows_.all();
    for (ManagedWindow& window : windows) {
        window.isMinimized = snapshot.minimizedWindowIDs.contains(window.id);
        window.isVisible = !window.isMinimized && (window.isVisible || snapshot.visibleWindowIDs.contains(window.id));
        const auto frame = snapshot.windowFrames.find(window.id);
        if (frame != snapshot.windowFrames.end() && geometry_.isOnSomeScreen(frame->second))
            window.frame = frame->second;
    }
    return windows;
}

Outcome UndoSteps::toggleFocusMode(const std::optional<WindowID>& windowID) {
    if (!focusMode_.isOn()) return enterFocusMode(windowID);
    leaveFocusMode();
    return Outcome::done("Focus Mode closed — workspace restored");
}

Outcome UndoSteps::enterFocusMode(const std::optional<WindowID>& windowID) {
    const auto start = finder_.zoomStartingPoint(windowID);
    if (!start) {
        const bool isThere = finder_.actingWindow(windowID) != nullptr;
        return access_.refuse(isThere ? "The window lies on no display" : *finder_.whyNoStartingPoint(windowID));
    }
    const Screen* screen = geometry_.screenOf(start->displayID);
    if (!screen) return access_.refuseSilently("The window lies on no display");
    if (geometry_.layoutOn(*screen).slots.size() < 2) {
        return access_.refuse("This display already uses a single-pane layout");
    }
    const CGRect frame = geometry_.restingFrame(start->window, *geometry_.zoomFrame(start->displayID));

    abandonDrags(); // otherwise the end of the drag would add an undo step after that of focus mode
    auto snapshot = captureUndoSnapshot();
    auto history = undo_.entries();
    pushUndoSnapshot({std::string(action::ToggleFocusZoom::kTraits.undoLabel), {start->window.applicationName}},
                     snapshot);
    focusMode_.enter({start->displayID, start->target, start->window.id}, {std::move(snapshot), std::move(history)});
    presenter_.writeFrame(start->window, frame, AccessibilityWindowService::BringToFront::yes);
    keeper_.commit({.hasMovedTiles = true, .straying = kFramesStay});
    return Outcome::done("Focus Mode — " + start->window.applicationName + " owns this display");
}

bool UndoSteps::leaveFocusMode() {
    auto before = focusMode_.leave();
    if (!before) return false;
    restoreUndoSnapshot(before->snapshot);
    undo_.restore(std::move(before->history));
    state_.canUndo.set(!undo_.isEmpty());
    keeper_.commit({.hasMovedTiles = true, .straying = kFramesStay, .comparesTiles = false});
    return true;
}

/// No-op during a suspension: actions are refused then, and the zoomed window stays.
void UndoSteps::closeFocusMode() {
    if (!access_.isAway()) (void)leaveFocusMode();
}

} // namespace kova
