#include "workspace/Snapshots.h"

#include "persistence/PreferenceKeys.h"
#include "workspace/WorkspaceParts.h"
#include "workspace/WorkspacePreferences.h"

#include <set>
#include <utility>

namespace kova {

Snapshots::Snapshots(WorkspaceParts& parts, RefreshCycle& refreshCycle, TileGeometry& geometry,
                     WindowPresenter& presenter, DocumentStore& documents, LayoutFollower& follower) :
    services_(parts.services),
    windowService_(*parts.windowService), state_(parts.state), liveWindows_(parts.liveWindows),
    assignments_(parts.assignments), tileMemory_(parts.tileMemory), displays_(parts.displays),
    floating_(parts.floating), arrangementMemory_(parts.arrangementMemory), refreshCycle_(refreshCycle),
    geometry_(geometry), presenter_(presenter), documents_(documents), follower_(follower) {}

WorkspaceUndoSnapshot Snapshots::capture() const {
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
                                   .rememberedLayouts = tileMemory_.rememberedLayouts(),
                                   .learning = arrangementMemory_.learning()};
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

void Snapshots::restore(const WorkspaceUndoSnapshot& snapshot) {
    assignments_ = snapshot.tiles;
    tileMemory_.setSpaces(snapshot.spaces);
    const bool isAnotherSpace = tileMemory_.restoreFromSpaces(liveWindows_.all(), liveWindows_.shownSpace(),
                                                              SpaceChange::possible, assignments_);
    displays_.replaceRemembered(assignments_);
    floating_.restore(snapshot.floatingWindowIDs);
    std::set<DisplayID> connected;
    for (const auto& screen : *state_.screens) connected.insert(displayID(screen));
    // Windows that the snapshot assigns to a disconnected display are remembered for it.
    displays_.rememberDisconnectedDisplays(assignments_, connected);
    WorkspaceProfile profile = snapshot.profile;
    profile.autoArrangeOnLaunch = state_.profile->autoArrangeOnLaunch; // settings that undo does not cover
    profile.preferredApplications = state_.profile->preferredApplications;
    state_.profile.set(std::move(profile));
    saveProfile(services_.preferences, *state_.profile);
    state_.accentColorID.set(snapshot.accentColorID);
    services_.preferences.setValue(preferenceKey::accentColor, snapshot.accentColorID);
    documents_.restoreActiveScene(snapshot.activeSceneID);
    tileMemory_.setRememberedLayouts(snapshot.rememberedLayouts);
    if (snapshot.learning) arrangementMemory_.setLearning(snapshot.learning);
    geometry_.layouts().invalidateAll();
    if (isAnotherSpace)
        follower_.migrateFromMissingTiles(); // the windows of that Space were placed with an earlier layout
    for (const ManagedWindow& window : liveWindows_) restoreWindow(window, snapshot);
    hideAsIn(snapshot); // last, so that windows minimized above do not count as hidden with their application
    refreshCycle_.refresh();
}

void Snapshots::keepAppearance(WorkspaceUndoSnapshot& snapshot) const {
    snapshot.profile.themeID = state_.profile->themeID;
    snapshot.accentColorID = *state_.accentColorID;
    snapshot.activeSceneID = *state_.activeSceneID;
}

void Snapshots::restoreWindow(const ManagedWindow& window, const WorkspaceUndoSnapshot& snapshot) {
    const bool wasVisible = snapshot.visibleWindowIDs.contains(window.id);
    const bool wasHidden = snapshot.hiddenProcessIdentifiers.contains(window.processIdentifier);
    const auto frame = snapshot.windowFrames.find(window.id);
    if (window.isElsewhere) {
        if (frame != snapshot.windowFrames.end()) tileMemory_.setPendingFrame(window.id, frame->second);
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

/// Hiding an application hides all its windows. If a window was opened since the snapshot, it must stay visible, so the
/// windows that were hidden are minimized instead.
void Snapshots::hideAsIn(const WorkspaceUndoSnapshot& snapshot) {
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

std::vector<ManagedWindow> Snapshots::windowsAsIn(const WorkspaceUndoSnapshot& snapshot) const {
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

} // namespace kova
