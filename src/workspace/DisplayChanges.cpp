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
    const bool keepsFocusMode = mayKeepFocusMode(before);
    // The zoomed window fills a display that has changed. Focus mode ends, so that all windows are placed on the
    // present displays.
    if (access_.isRunning() && !keepsFocusMode) steps_.closeFocusMode();
    recordConnectedAndDisconnected(idsOf(before));
    cancelUnreachablePlacements();
    displays_.beginSettling();
    if (!access_.mayMoveWindows()) return;
    adaptToDisplays();
    if (keepsFocusMode) keepFramesAfterFocusMode();
    refreshCycle_.refresh();
}

/// Whether focus mode can go on: the only change is that displays without the zoomed window have another visible frame,
/// for example because of a panel, and these displays keep their layouts.
bool DisplayChanges::mayKeepFocusMode(const std::vector<Screen>& before) const {
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

/// Changes the snapshot that the end of focus mode restores, so that windows on displays without the zoomed window keep
/// their new frames.
void DisplayChanges::keepFramesAfterFocusMode() {
    WorkspaceUndoSnapshot* before = focusMode_.snapshot();
    if (!before) return;
    for (const auto& screen : *state_.screens) {
        if (focusMode_.ownsDisplay(displayID(screen))) continue;
        for (const auto& [id, frame] : geometry_.framesOfTiledWindows(screen)) before->windowFrames[id] = frame;
    }
}

/// Only records the change and assigns tiles. Does not move windows, since that may not be allowed now.
void DisplayChanges::recordConnectedAndDisconnected(const std::set<DisplayID>& before) {
    for (const auto& [formerID, newID] : displays_.noteConnected(before, idsOf(*state_.screens), assignments_)) {
        displayHasNewID(formerID, newID);
    }
    displays_.returnDisplacedByArrangement(assignments_, idsOf(*state_.screens), [this](const WindowID& id) {
        const ManagedWindow* window = liveWindows_.find(id);
        return window && !window->isElsewhere && window->isMinimized && liveWindows_.minimized().contains(id);
    });
    keeper_.commit(
        {.hasMovedTiles = true, .resetsLimits = true, .correctedDrift = kNoCorrection, .comparesTiles = false});
    session_.noteChange(); // the session contains the disconnected displays
}

/// Call when a display that is named by its frame has got a new id, because its frame has changed.
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

/// Called once the displays have not changed for the settle time. Moves the windows of disconnected displays to other
/// displays. This does not happen earlier, since a display on standby may look disconnected for a moment.
void DisplayChanges::displaysSettled() {
    if (!access_.mayMoveWindows()) return;
    const RequestBatch::Scope batch(requests_);
    displays_.forgetRecentlyDisconnected();
    placeWindowsOfDisconnectedDisplays();
    returnStrandedFloats(); // a display may have returned during a suspension
    moveIntoView();
}

/// Puts the front windows of disconnected displays into free tiles, preferably of the same slot, and stacks the stacked
/// windows there. No window is displaced. The moved windows return when their display is connected again. A display
/// in focus mode gets no window until focus mode ends.
void DisplayChanges::placeWindowsOfDisconnectedDisplays() {
    if (pointer_.isPausingPolls()) return displays_.beginSettling(); // tries again after the drag
    const auto fronts = placeFrontsOfDisconnectedDisplays();
    const auto stacked = restackWindowsOfDisconnectedDisplays();
    if (focusMode_.isOn()) {
        displays_.noteKeptOutByFocusMode(!displays_.disconnectedDisplays().empty());
        keepTilesAfterFocusMode(fronts, stacked);
    }
    if (!fronts.empty() || !stacked.empty()) keeper_.commit({});
}

/// Moves windows that have no tile and are not in view onto a connected display. Such a window was in a tile of a
/// disconnected display and no other tile was free, or it floated on a disconnected display.
void DisplayChanges::moveIntoView() {
    if (pointer_.isPausingPolls() || state_.screens->empty()) return;
    const double top = geometry_.firstScreenMaxY();
    for (const ManagedWindow& live : std::vector(liveWindows_.all())) {
        const auto tile = assignments_.targetOf(live.id);
        const bool hasTile = tile && geometry_.screenOfTarget(*tile);
        if (hasTile || !live.isVisible || !live.frame || presenter_.isLeftAlone(live)) continue;
        const CGRect frameOnScreen = flipped(*live.frame, top);
        const CGRect visible = flipped(screenNearest(*state_.screens, frameOnScreen)->visibleFrame, top);
        const bool isInView = displays_.belongsToDisconnectedDisplay(live.id)
                                  ? containsWithin(visible, *live.frame, 0)
                                  : isMiddleShown(*state_.screens, frameOnScreen);
        const CGRect newFrame = isInView ? *live.frame : movedIntoArea(*live.frame, visible);
        if (!isInView) presenter_.writeFrame(live, newFrame, AccessibilityWindowService::BringToFront::no);
        displays_.settleStranded(live.id, newFrame);
    }
}

bool DisplayChanges::isOnZoomedDisplay(const WorkspaceTile& tile) const {
    return focusMode_.ownsDisplay(tile.displayID);
}

/// Places the front windows of disconnected displays in free tiles. Returns the windows that were placed.
std::vector<WindowID> DisplayChanges::placeFrontsOfDisconnectedDisplays() {
    const auto isFree = [this](const WorkspaceTile& tile) {
        return !tile.windowID && tile.stack.empty() && !isOnZoomedDisplay(tile);
    };
    std::vector<std::pair<SlotID, WindowID>> frontsWithoutTile; // with the slots that they had
    for (const auto& [key, remembered] : displays_.disconnectedDisplays()) {
        for (const auto& [target, windowID] : remembered.assignedWindowIDs) {
            auto now = assignments_.targetOf(windowID);
            if (!now) now = assignments_.stackTargetOf(windowID);
            const bool hasTile = now && geometry_.screenOfTarget(*now);
            const bool isAnchor = remembered.targetOf(windowID) == target; // lists a spanning window only once
            if (target.display == key.displayID && isAnchor && !hasTile)
                frontsWithoutTile.emplace_back(target.slot, windowID);
        }
    }
    std::vector<WindowID> placed;
    for (const auto& [slotID, windowID] : frontsWithoutTile) {
        const ManagedWindow* live = liveWindows_.find(windowID);
        if (!live || !live->isVisible || presenter_.isLeftAlone(*live)) continue;
        const ManagedWindow window = *live;
        std::optional<Covering> chosen;
        bool hasSameSlot = false;
        for (const auto& tile : geometry_.tiles()) {
            const bool isSameSlot = tile.slot.id == slotID;
            if (!isFree(tile) || (chosen && (hasSameSlot || !isSameSlot))) continue;
            auto covering = geometry_.coveringFor(window, tile.target);
            if (!covering || covering->targets.size() > 1) continue; // the window needs more than one tile
            chosen = std::move(covering);
            hasSameSlot = isSameSlot;
        }
        if (!chosen) continue;
        keeper_.place(window, *chosen, AccessibilityWindowService::BringToFront::no);
        placed.push_back(windowID);
    }
    return placed;
}

/// Stacks the stacked windows of disconnected displays in tiles of connected displays. Their new tile is the tile of
/// their former front window. If that window has no tile, another occupied tile is used, preferably one with the same
/// slot. Returns the windows that were stacked.
std::vector<WindowID> DisplayChanges::restackWindowsOfDisconnectedDisplays() {
    std::vector<WindowID> stacked;
    for (const auto& [key, remembered] : displays_.disconnectedDisplays()) {
        for (const auto& [formerTile, stack] : remembered.stackWindowIDsByTarget) {
            const auto front = remembered.assignedWindowIDs.find(formerTile);
            std::optional<TileTarget> newTile;
            if (front != remembered.assignedWindowIDs.end()) newTile = assignments_.targetOf(front->second);
            if (!newTile || !geometry_.screenOfTarget(*newTile)) {
                newTile.reset();
                for (const auto& tile : geometry_.tiles()) {
                    if (!tile.windowID || isOnZoomedDisplay(tile)) continue;
                    const bool hasSameSlot = formerTile.display == key.displayID && tile.slot.id == formerTile.slot;
                    if (!newTile || hasSameSlot) newTile = assignments_.targetOf(*tile.windowID);
                    if (hasSameSlot) break;
                }
            }
            if (!newTile) continue;
            for (const auto& member : stack) {
                const auto now = assignments_.stackTargetOf(member);
                if (!now || geometry_.screenOfTarget(*now) || assignments_.isAssigned(member)) continue;
                assignments_.insertIntoStack(*newTile, member, TileAssignments::StackPosition::behind);
                stacked.push_back(member);
            }
        }
    }
    return stacked;
}

/// Adds the placed windows to the snapshot that the end of focus mode restores, so that they keep their new tiles.
void DisplayChanges::keepTilesAfterFocusMode(const std::vector<WindowID>& fronts,
                                             const std::vector<WindowID>& stacked) {
    WorkspaceUndoSnapshot* snapshot = focusMode_.snapshot();
    if (!snapshot) return;
    for (const auto& id : fronts) snapshot->tiles.adopt(id, assignments_);
    for (const auto& id : stacked) {
        if (const auto tile = assignments_.stackTargetOf(id)) {
            snapshot->tiles.insertIntoStack(*tile, id, TileAssignments::StackPosition::behind);
        }
    }
    for (const auto& id : fronts) {
        if (const auto frame = geometry_.frameForWindow(id)) snapshot->windowFrames[id] = *frame;
    }
}

/// Cancels placements whose frame is on no display. The desktop may move windows of a disconnected display to a
/// connected one, and the verification of a pending placement must not move such a window off the screen again.
void DisplayChanges::cancelUnreachablePlacements() {
    windowService_.cancelPlacements([this](const CGRect& target) { return !geometry_.isOnSomeScreen(target); });
}

} // namespace kova
