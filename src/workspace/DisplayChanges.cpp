#include "workspace/DisplayChanges.h"

#include "workspace/LayoutMigration.h"
#include "workspace/VisibleArea.h"
#include "workspace/WorkspaceParts.h"

#include <algorithm>
#include <utility>

namespace kova {

namespace {

std::set<DisplayID> idsOf(const std::vector<Screen>& screens) {
    std::set<DisplayID> ids;
    for (const auto& screen : screens) ids.insert(displayID(screen));
    return ids;
}

} // namespace

DisplayChanges::DisplayChanges(WorkspaceParts& parts, RefreshCycle& refreshCycle, WorkspaceAccess& access,
                               TileGeometry& geometry, WindowPresenter& presenter, TileKeeper& keeper,
                               LayoutFollower& follower, UndoSteps& steps,
                               std::function<void(const DisplayID& formerID, const DisplayID& newID)> renameDisplay) :
    services_(parts.services),
    requests_(parts.requests), windowService_(*parts.windowService), state_(parts.state),
    liveWindows_(parts.liveWindows), assignments_(parts.assignments), displays_(parts.displays),
    focusMode_(parts.focusMode), pointer_(parts.pointer), session_(parts.session), refreshCycle_(refreshCycle),
    access_(access), geometry_(geometry), presenter_(presenter), keeper_(keeper), follower_(follower), steps_(steps),
    renameDisplay_(std::move(renameDisplay)) {}

void DisplayChanges::readScreens() {
    auto screens = services_.screens.screens();
    for (Screen& screen : screens) screen.knownID = displayID(screen);
    state_.screens.set(std::move(screens));
}

void DisplayChanges::screensChanged() {
    const RequestBatch::Scope batch(requests_);
    const std::vector<Screen> before = *state_.screens;
    readScreens();
    geometry_.layouts().invalidateAll();
    displays_.noteStranded(before, idsOf(*state_.screens), liveWindows_.all(), assignments_);
    const bool keepsFocusMode = isBesideFocusMode(before);
    // The zoomed frame belongs to the former display; the restored windows must be visible on the present ones.
    if (access_.isRunning() && !keepsFocusMode) steps_.closeFocusMode();
    recordConnectedAndDisconnected(idsOf(before));
    cancelUnreachablePlacements();
    displays_.beginSettling();
    if (!access_.mayMoveWindows()) return;
    adaptToDisplays();
    if (keepsFocusMode) keepFramesBesideFocusMode();
    refreshCycle_.refresh();
}

/// Whether the change leaves focus mode alone: only visible frames of displays without the zoomed window have changed,
/// for example because of a panel, and those displays keep their layouts.
bool DisplayChanges::isBesideFocusMode(const std::vector<Screen>& before) const {
    if (!focusMode_.isOn()) return false;
    const auto& now = *state_.screens;
    return std::equal(before.begin(), before.end(), now.begin(), now.end(), [this](const Screen& a, const Screen& b) {
        const DisplayID id = displayID(b);
        if (displayID(a) != id || a.frame != b.frame) return false;
        if (focusMode_.ownsDisplay(id)) return a.visibleFrame == b.visibleFrame;
        const ShownLayout* last = displays_.shown(id);
        return last && last->layoutID == geometry_.layoutOn(b).id;
    });
}

void DisplayChanges::keepFramesBesideFocusMode() {
    WorkspaceUndoSnapshot* before = focusMode_.snapshot();
    if (!before) return;
    for (const auto& screen : *state_.screens) {
        if (focusMode_.ownsDisplay(displayID(screen))) continue;
        for (const auto& [id, frame] : geometry_.framesOfTiledWindows(screen)) before->windowFrames[id] = frame;
    }
}

/// Only records the change; the caller decides whether windows may be moved now.
void DisplayChanges::recordConnectedAndDisconnected(const std::set<DisplayID>& before) {
    for (const auto& [formerID, newID] : displays_.noteConnected(before, idsOf(*state_.screens), assignments_)) {
        displayHasNewID(formerID, newID);
    }
    displays_.returnDisplacedByArrangement(assignments_, idsOf(*state_.screens), [this](const WindowID& id) {
        const ManagedWindow* window = liveWindows_.find(id);
        return window && !window->isElsewhere && liveWindows_.minimized().contains(id);
    });
    keeper_.commit(
        {.hasMovedTiles = true, .resetsLimits = true, .correctedDrift = kNoCorrection, .comparesTiles = false});
    session_.noteChange(); // the record contains the disconnected displays
}

/// The display is named by its frame, which has changed.
void DisplayChanges::displayHasNewID(const DisplayID& formerID, const DisplayID& newID) {
    renameDisplay_(formerID, newID);
    WorkspaceProfile profile = *state_.profile;
    displays_.carryLayout(profile, formerID, newID);
    if (profile != *state_.profile) keeper_.setProfile(std::move(profile));
}

/// Adapts windows and layouts to the present displays.
void DisplayChanges::adaptToDisplays() {
    follower_.migrateChangedDisplays();
    follower_.presentReturnedWindows();
    returnStrandedFloats();
    keeper_.commit({.claimant = ""});
}

void DisplayChanges::returnStrandedFloats() {
    const auto returned = displays_.takeReturnedStranded(idsOf(*state_.screens), liveWindows_.all(), assignments_);
    for (const auto& [id, frame] : returned) {
        const ManagedWindow window = *liveWindows_.find(id);
        if (!presenter_.isLeftAlone(window))
            presenter_.writeFrame(window, frame, AccessibilityWindowService::BringToFront::no);
    }
}

/// Windows are moved to other displays only after their display was disconnected for the settle time.
void DisplayChanges::displaysSettled() {
    if (!access_.mayMoveWindows()) return;
    const RequestBatch::Scope batch(requests_);
    displays_.forgetRecentlyDisconnected();
    placeWindowsOfDisconnectedDisplays();
    returnStrandedFloats(); // of displays that returned during a suspension
    bringIntoSight();
}

/// Puts the front windows of disconnected displays into free tiles, preferably of the same slot, and stacks their
/// stacked windows. No window is displaced. All return with their display. A display in focus mode gets no
/// window until focus mode ends.
void DisplayChanges::placeWindowsOfDisconnectedDisplays() {
    if (pointer_.isPausingPolls()) return displays_.beginSettling(); // tries again after the drag
    const auto fronts = placeFrontsOfDisconnectedDisplays();
    const auto waiting = restackWindowsOfDisconnectedDisplays();
    if (focusMode_.isOn()) {
        displays_.noteKeptOutByFocusMode(!displays_.disconnectedDisplays().empty());
        keepBesideFocusMode(fronts, waiting);
    }
    if (!fronts.empty() || !waiting.empty()) keeper_.commit({});
}

/// Moves windows without a tile onto a connected display. A window may be outside all displays if no tile was free, or
/// if it floated on a disconnected display.
void DisplayChanges::bringIntoSight() {
    if (pointer_.isPausingPolls() || state_.screens->empty()) return;
    const double top = geometry_.firstScreenMaxY();
    for (const ManagedWindow& live : std::vector(liveWindows_.all())) {
        const auto tile = assignments_.targetOf(live.id);
        const bool hasTile = tile && geometry_.screenOfTarget(*tile);
        if (hasTile || !live.isVisible || !live.frame || presenter_.isLeftAlone(live)) continue;
        const CGRect onScreen = flipped(*live.frame, top);
        const CGRect visible = flipped(screenNearest(*state_.screens, onScreen)->visibleFrame, top);
        const bool isInSight = displays_.belongsToDisconnectedDisplay(live.id)
                                   ? containsWithin(visible, *live.frame, 0)
                                   : isMiddleShown(*state_.screens, onScreen);
        const CGRect inSight = isInSight ? *live.frame : movedIntoArea(*live.frame, visible);
        if (!isInSight) presenter_.writeFrame(live, inSight, AccessibilityWindowService::BringToFront::no);
        displays_.settleStranded(live.id, inSight);
    }
}

bool DisplayChanges::isZoomedOver(const WorkspaceTile& tile) const {
    return focusMode_.ownsDisplay(tile.displayID);
}

/// Returns the windows that were placed.
std::vector<WindowID> DisplayChanges::placeFrontsOfDisconnectedDisplays() {
    const auto isFree = [this](const WorkspaceTile& tile) {
        return !tile.windowID && tile.stack.empty() && !isZoomedOver(tile);
    };
    std::vector<std::pair<SlotID, WindowID>> displaced;
    for (const auto& [absent, held] : displays_.disconnectedDisplays()) {
        for (const auto& [target, windowID] : held.assignedWindowIDs) {
            auto now = assignments_.targetOf(windowID);
            if (!now) now = assignments_.stackTargetOf(windowID);
            const bool hasTile = (now && geometry_.screenOfTarget(*now)) || held.targetOf(windowID) != target;
            if (target.display == absent.displayID && !hasTile) displaced.emplace_back(target.slot, windowID);
        }
    }
    std::vector<WindowID> placed;
    for (const auto& [slotID, windowID] : displaced) {
        const ManagedWindow* live = liveWindows_.find(windowID);
        if (!live || !live->isVisible || presenter_.isLeftAlone(*live)) continue;
        const ManagedWindow window = *live;
        std::optional<Covering> chosen;
        bool hasSameSlot = false;
        for (const auto& tile : geometry_.tiles()) {
            const bool isSameSlot = tile.slot.id == slotID;
            if (!isFree(tile) || (chosen && (hasSameSlot || !isSameSlot))) continue;
            auto covering = geometry_.coveringFor(window, tile.target);
            if (!covering || covering->targets.size() > 1) continue; // the window would need tiles of other windows
            chosen = std::move(covering);
            hasSameSlot = isSameSlot;
        }
        if (!chosen) continue;
        keeper_.place(window, *chosen, AccessibilityWindowService::BringToFront::no);
        placed.push_back(windowID);
    }
    return placed;
}

/// Stacks the stacked windows of disconnected displays again. Their new tile is that of their former front window. If
/// that window has none, another occupied tile is used, preferably one of the same slot. Returns the stacked windows.
std::vector<WindowID> DisplayChanges::restackWindowsOfDisconnectedDisplays() {
    std::vector<WindowID> taken;
    for (const auto& [absent, held] : displays_.disconnectedDisplays()) {
        for (const auto& [home, stack] : held.stackWindowIDsByTarget) {
            const auto front = held.assignedWindowIDs.find(home);
            std::optional<TileTarget> there;
            if (front != held.assignedWindowIDs.end()) there = assignments_.targetOf(front->second);
            if (!there || !geometry_.screenOfTarget(*there)) {
                there.reset();
                for (const auto& tile : geometry_.tiles()) {
                    if (!tile.windowID || isZoomedOver(tile)) continue;
                    const bool hasSameSlot = home.display == absent.displayID && tile.slot.id == home.slot;
                    if (!there || hasSameSlot) there = assignments_.targetOf(*tile.windowID);
                    if (hasSameSlot) break;
                }
            }
            if (!there) continue;
            for (const auto& member : stack) {
                const auto now = assignments_.stackTargetOf(member);
                if (!now || geometry_.screenOfTarget(*now) || assignments_.isAssigned(member)) continue;
                assignments_.insertIntoStack(*there, member, TileAssignments::StackPosition::behind);
                taken.push_back(member);
            }
        }
    }
    return taken;
}

/// The end of focus mode must not undo changes on other displays.
void DisplayChanges::keepBesideFocusMode(const std::vector<WindowID>& fronts, const std::vector<WindowID>& waiting) {
    WorkspaceUndoSnapshot* snapshot = focusMode_.snapshot();
    if (!snapshot) return;
    for (const auto& id : fronts) snapshot->tiles.adopt(id, assignments_);
    for (const auto& id : waiting) {
        if (const auto tile = assignments_.stackTargetOf(id)) {
            snapshot->tiles.insertIntoStack(*tile, id, TileAssignments::StackPosition::behind);
        }
    }
    for (const auto& id : fronts) {
        if (const auto frame = geometry_.frameForWindow(id)) snapshot->windowFrames[id] = *frame;
    }
}

/// The desktop may move windows of a disconnected display to a connected one. The verification of a pending placement
/// must not move such a window off the screen again.
void DisplayChanges::cancelUnreachablePlacements() {
    windowService_.cancelPlacements([this](const CGRect& target) { return !geometry_.isOnSomeScreen(target); });
}

} // namespace kova
