#include "workspace/TileKeeper.h"

#include "support/SameFrame.h"
#include "workspace/WorkspaceParts.h"
#include "workspace/WorkspacePreferences.h"

#include <algorithm>
#include <charconv>
#include <utility>

namespace kova {

using BringToFront = AccessibilityWindowService::BringToFront;

TileKeeper::TileKeeper(WorkspaceParts& parts, WorkspaceAccess& access, TileGeometry& geometry,
                       WindowPresenter& presenter) :
    services_(parts.services),
    requests_(parts.requests), windowService_(*parts.windowService), state_(parts.state),
    liveWindows_(parts.liveWindows), assignments_(parts.assignments), tileMemory_(parts.tileMemory),
    displays_(parts.displays), focusMode_(parts.focusMode), floating_(parts.floating), pointer_(parts.pointer),
    frames_(parts.frames), awaited_(parts.awaited), arrangementMemory_(parts.arrangementMemory), access_(access),
    geometry_(geometry), presenter_(presenter) {}

void TileKeeper::noteMovedByUser(const WindowID& windowID) {
    displays_.forget(windowID);
    awaited_.noteMovedByUser(windowID);
    tileMemory_.noteMovedByUser(windowID);
    exemptFromRules(windowID);
}

void TileKeeper::storeWeights(const DisplayID& id, const std::string& layoutID, LayoutWeightOverrides weights) {
    WorkspaceProfile profile = *state_.profile;
    profile.setWeights(id, layoutID, std::move(weights));
    setProfile(std::move(profile));
}

void TileKeeper::setProfile(WorkspaceProfile profile) {
    if (profile == *state_.profile) return;
    state_.profile.set(std::move(profile));
    saveProfile(services_.preferences, *state_.profile);
}

void TileKeeper::layoutChanged(const DisplayID& id) {
    geometry_.layouts().invalidate(id);
    commit({.hasMovedTiles = true,
            .resetsLimits = true,
            .endsArrangement = true,
            .claimant = access_.mayMoveWindows() ? std::optional<WindowID>("") : std::nullopt,
            .correctedDrift = FrameKeeper::CorrectedDrift::any});
}

/// True if tiles have moved since the last call. The cause may be a new layout or changed minimum sizes of windows.
bool TileKeeper::noteTileGeometry() {
    bool hasMoved = false;
    for (const auto& screen : *state_.screens) {
        const DisplayID id = displayID(screen);
        const SolvedLayout& solved = geometry_.solvedTiles(screen);
        const std::string& layoutID = geometry_.layoutOn(screen).id;
        hasMoved = displays_.noteShown(id, layoutID, solved) || hasMoved;
    }
    return hasMoved;
}

/// Publishes the assignments. Before that, windows that have a tile by now are removed from the floating windows.
void TileKeeper::publishAssignments() {
    keepFloatingValid();
    state_.assignedWindowIDs.set(assignments_.assignedWindowIDs);
    state_.stackWindowIDsByTarget.set(assignments_.stackWindowIDsByTarget);
}

void TileKeeper::raiseRevision() {
    state_.layoutRevision.set(*state_.layoutRevision + 1);
}

void TileKeeper::commit(const Transaction& changes) {
    const RequestBatch::Scope batch(requests_);
    if (changes.resetsLimits) frames_.resetLimits();
    if (changes.endsArrangement) (void)arrangementMemory_.dropRemainingSteps();
    if (changes.claimant) claimRoomWhereNeeded(*changes.claimant);
    if (changes.before) bringNextForward(*changes.before);
    displaced_.insert(displaced_.end(), changes.displaced.begin(), changes.displaced.end());
    hideDisplaced();
    requestFramesOfPlaced();
    publishAssignments();
    const bool haveMoved = changes.comparesTiles && noteTileGeometry();
    if (changes.hasMovedTiles || haveMoved) raiseRevision();
    if (changes.correctedDrift) presenter_.reapplyTileFrames(*changes.correctedDrift);
}

/// Does not hide displaced windows that a later step of the operation has put into a tile again.
void TileKeeper::hideDisplaced() {
    auto displaced = std::exchange(displaced_, {});
    std::erase_if(displaced, [this](const WindowID& id) { return assignments_.isAssigned(id); });
    presenter_.hideDisplaced(displaced);
}

/// Requests the frames of the placed windows that still have a tile.
void TileKeeper::requestFramesOfPlaced() {
    const auto placed = std::exchange(placed_, {});
    for (const auto& [windowID, raise] : placed) {
        const ManagedWindow* window = liveWindows_.find(windowID);
        const auto frame = geometry_.frameForWindow(windowID);
        if (window && frame) presenter_.writeFrame(ManagedWindow(*window), *frame, raise);
    }
}

/// Makes the window the front window of the tiles. Returns their former front windows, each once.
std::vector<WindowID> TileKeeper::takeTiles(const WindowID& windowID, const Covering& covering) {
    std::vector<TileTarget> targets;
    for (const auto& target : covering.targets) targets.push_back(target.id());
    const TileTarget& anchorID = targets.front();
    tileMemory_.storeElsewhereFrom(targets, liveWindows_.all(), assignments_);
    std::map<WindowID, TileTarget> lost; // the tile that each displaced window loses
    for (const auto& target : targets) {
        const auto front = assignments_.assignedWindowIDs.find(target);
        if (front != assignments_.assignedWindowIDs.end()) lost[front->second] = *assignments_.targetOf(front->second);
    }
    assignments_.insertIntoStack(anchorID, windowID, TileAssignments::StackPosition::front);
    auto displaced = assignments_.assign(windowID, targets);
    assignments_.mergeStacksInto(anchorID, targets, displaced);
    tileMemory_.noteInFront(windowID);
    for (const auto& id : displaced) {
        tileMemory_.noteDisplaced(id, lost[id], assignments_.stackTargetOf(id).value_or(lost[id]));
    }
    return displaced;
}

void TileKeeper::place(const ManagedWindow& window, const Covering& covering, BringToFront raise) {
    for (auto& id : takeTiles(window.id, covering)) displaced_.push_back(std::move(id));
    const auto before = std::ranges::find(placed_, window.id, &Placed::windowID);
    if (before == placed_.end()) {
        placed_.push_back({window.id, raise});
    } else if (raise == BringToFront::yes) {
        before->raise = raise;
    }
    if (covering.targets.size() > 1) announceClaim(window, covering);
}

void TileKeeper::announceClaim(const ManagedWindow& window, const Covering& covering) {
    WindowPlacementNotice notice;
    bool first = true;
    for (const auto& target : covering.targets) {
        const auto cell = geometry_.tileFrameOnScreen(target.id());
        if (!cell) continue;
        notice.claimedFrame = first ? *cell : unionOf(notice.claimedFrame, *cell);
        first = false;
    }
    notice.additionalTileCount = static_cast<int>(covering.targets.size()) - 1;
    notice.applicationName = window.applicationName;
    state_.placementNotice.set(notice);
}

bool TileKeeper::placeInTile(const WindowID& windowID, const TileTarget& target, Focusing focusing) {
    const ManagedWindow* live = liveWindows_.find(windowID);
    if (!live) return false;
    const ManagedWindow window = *live;
    const auto covering = geometry_.coveringFor(window, target);
    if (!covering) return false;
    place(window, *covering, focusing == Focusing::yes ? BringToFront::yes : BringToFront::no);
    return true;
}

bool TileKeeper::placeWindow(const WindowID& windowID, const TileTarget& target, Focusing focusing) {
    const TileAssignments before = assignments_;
    if (!placeInTile(windowID, target, focusing)) return false;
    commit({.before = before});
    return true;
}

/// If a window stayed wider or higher than requested, its actual width or height is its minimum.
void TileKeeper::minimumSizeObserved(const WindowID& windowID, const CGRect& wanted, const CGRect& actual) {
    frames_.endRetry(windowID);
    const ManagedWindow* window = liveWindows_.find(windowID);
    if (!window || window->isFullScreen || window->isMaximized) return;
    liveWindows_.noteFrame(windowID, actual); // replaces the requested frame
    switch (frames_.noteRefusedSize(*window, wanted.size, actual.size, services_.queue.uptime())) {
    case WindowSizes::Refusal::unreliable:
        return;
    case WindowSizes::Refusal::known:
        return makeRoomFor(ManagedWindow(*window));
    case WindowSizes::Refusal::changed:
        return reflow(windowID);
    }
}

/// Computes the tiles of the window's display again with the changed minimum size: now or, if that was done too
/// recently, later. Does nothing once the limit for this window is reached.
void TileKeeper::reflow(const WindowID& windowID) {
    const ManagedWindow* window = liveWindows_.find(windowID);
    const auto target = assignments_.targetOf(windowID);
    const Screen* screen = target ? geometry_.screenOfTarget(*target) : nullptr;
    if (!frames_.sizes().hasPendingChange(windowID) || !window || !screen || !access_.mayMoveWindows()) return;
    const Seconds now = services_.queue.uptime();
    const auto due = frames_.reflow().nextReflow(displayID(*screen), windowID, now);
    if (!due) return;
    if (*due > now) {
        services_.queue.after(*due - now, lifetime_.guard([this, windowID] { reflow(windowID); }));
        return;
    }
    frames_.noteReflow(displayID(*screen), windowID, now);
    if (frames_.applyMinimum(windowID)) rememberMinimum(*window, geometry_.minimumSizeOf(*window));
    publishMinimums();
    makeRoomFor(ManagedWindow(*window));
}

/// Stores the minimum size as a first guess for other windows of the application. If `minimum` is absent, forgets the
/// stored size.
void TileKeeper::rememberMinimum(const ManagedWindow& window, std::optional<CGSize> minimum) {
    WorkspaceProfile profile = *state_.profile;
    const auto key = applicationKey(window.applicationName, window.bundleIdentifier);
    if (minimum) {
        profile.applicationMinimumSizes[key] = *minimum;
    } else {
        profile.applicationMinimumSizes.erase(key);
    }
    setProfile(std::move(profile));
}

/// Solves the layout again with the observed minimum size. If the tile is still too small, the window claims a span.
void TileKeeper::makeRoomFor(const ManagedWindow& window) {
    if (!assignments_.isAssigned(window.id)) return;
    if (pointer_.isPausingPolls()) return; // the next poll makes room
    commit({.hasMovedTiles = true, .claimant = window.id});
}

/// Gives spans to windows whose tiles are too small, beginning with `first`.
void TileKeeper::claimRoomWhereNeeded(const WindowID& first) {
    for (const Screen& screen : std::vector<Screen>(*state_.screens)) {
        if (focusMode_.ownsDisplay(displayID(screen))) continue;
        std::set<WindowID> done; // each window claims at most once, so that the loop ends
        while (const auto claim = nextClaimOn(screen, first, done)) {
            done.insert(claim->first.id);
            moveOutOfTheWay(screen, *claim);
            place(claim->first, claim->second, AccessibilityWindowService::BringToFront::no);
        }
    }
}

/// The next cramped window that can get room by claiming further tiles, and the tiles that it then covers. Windows in
/// `done` are skipped.
std::optional<std::pair<ManagedWindow, Covering>> TileKeeper::nextClaimOn(const Screen& screen, const WindowID& first,
                                                                          const std::set<WindowID>& done) const {
    const TileRoom room = geometry_.roomOn(screen);
    auto cramped = room.crampedIn(geometry_.solvedTiles(screen));
    std::stable_partition(cramped.begin(), cramped.end(), [&](const WindowID& id) { return id == first; });
    for (const auto& windowID : cramped) {
        const ManagedWindow* window = liveWindows_.find(windowID);
        const auto anchor = assignments_.targetOf(windowID);
        if (done.contains(windowID) || !window || !anchor || presenter_.isLeftAlone(*window)) continue;
        if (anchor->display != displayID(screen)) continue;
        const auto slots = room.tilesFor(windowID, geometry_.minimumSizeOf(*window), anchor->slot);
        const auto own = assignments_.targetsOf(windowID);
        const bool claimsMore = std::ranges::any_of(slots, [&](const SlotID& id) {
            return std::ranges::find(own, TileTarget{anchor->display, id}) == own.end();
        });
        const auto displaced = room.holdersOf(slots, windowID);
        const bool displacesFullScreen = std::ranges::any_of(displaced, [&](const WindowID& id) {
            const ManagedWindow* other = liveWindows_.find(id);
            return other && other->isFullScreen;
        });
        if (!claimsMore || displacesFullScreen) continue;
        if (auto covering = geometry_.coveringOn(screen, slots)) return std::pair{*window, *std::move(covering)};
    }
    return std::nullopt;
}

/// Moves the windows that lose their tiles to the claim into free tiles that are large enough. A window for which there
/// is no such tile will be stacked behind the claiming window.
void TileKeeper::moveOutOfTheWay(const Screen& screen, const std::pair<ManagedWindow, Covering>& claim) {
    std::vector<SlotID> claimed;
    for (const auto& target : claim.second.targets) claimed.push_back(target.slot.id);
    for (const auto& windowID : geometry_.roomOn(screen).holdersOf(claimed, claim.first.id)) {
        const ManagedWindow* live = liveWindows_.find(windowID);
        if (!live || presenter_.isLeftAlone(*live)) continue;
        const ManagedWindow window = *live;
        TileAssignments before = assignments_;
        assignments_.remove(windowID);
        std::vector<TileTarget> targets;
        for (const auto& target : claim.second.targets) targets.push_back(target.id());
        (void)assignments_.assign(claim.first.id, targets);
        auto covering = geometry_.freeCoveringOn(screen, window);
        assignments_ = std::move(before);
        if (covering) place(window, *covering, AccessibilityWindowService::BringToFront::no);
    }
}

void TileKeeper::noteSizesSeen() {
    for (const ManagedWindow& window : liveWindows_) {
        // For a window that does not respond, the list still contains the requested frame, not the actual one.
        const bool isSettled = window.frame && window.isVisible && window.isResponding && !window.isMinimized &&
                               !window.isFullScreen && !windowService_.pendingFrame(window.id);
        if (!isSettled) continue;
        const auto disproof = frames_.noteSeen(window, window.frame->size, geometry_.minimumOfApplication(window));
        if (disproof.ofApplication) rememberMinimum(window, std::nullopt);
    }
    publishMinimums();
}

/// Requests once the size that the tile would have without the learned minimum size. If the window refuses, its size
/// does not change. If it accepts, the next poll finds it smaller, and the learned minimum size is forgotten.
void TileKeeper::retryMinimum(const WindowID& windowID) {
    const ManagedWindow* window = liveWindows_.find(windowID);
    const auto anchor = assignments_.targetOf(windowID);
    const Screen* screen = anchor ? geometry_.screenOfTarget(*anchor) : nullptr;
    const auto frame = geometry_.frameForWindow(windowID);
    if (!window || !screen || !frame || presenter_.isLeftAlone(*window)) return;
    if (!frames_.sizes().isRetryDue(*window, geometry_.minimumOfApplication(*window), services_.queue.uptime())) return;
    const SolvedLayout plain =
        solveDefinition(geometry_.layoutOn(*screen), {}, screen->visibleFrame.size, state_.profile->tileInset);
    const auto slot = std::ranges::find(plain.slots, anchor->slot, &TileSlot::id);
    if (slot == plain.slots.end()) return;
    const CGRect cell = plain.frames[static_cast<std::size_t>(slot - plain.slots.begin())];
    const CGSize tile = insetBy(cell, state_.profile->tileInset).size;
    const CGSize announced = window->minimumSize.value_or(CGSize{});
    const CGSize needed = geometry_.minimumSizeOf(*window);
    CGRect smaller = *frame;
    if (needed.width > tile.width) smaller.size.width = std::max(announced.width, tile.width);
    if (needed.height > tile.height) smaller.size.height = std::max(announced.height, tile.height);
    if (nearlyEqual(smaller, *frame, kFrameTolerancePoints)) return; // the tile is large enough anyway
    frames_.beginRetry(windowID);
    presenter_.writeFrame(*window, smaller, AccessibilityWindowService::BringToFront::no);
}

/// Does nothing in focus mode, because the end of focus mode restores the former tiles.
void TileKeeper::giveBackSpans() {
    if (focusMode_.isOn()) return;
    const auto& anchors = assignments_.anchorsByWindowID;
    const auto minimumOf = [this](const WindowID& id) -> std::optional<CGSize> {
        const ManagedWindow* window = liveWindows_.find(id);
        return window ? std::optional(geometry_.minimumSizeOf(*window)) : std::nullopt;
    };
    const auto shrunken = frames_.takeShrunken(anchors, minimumOf);
    const TileAssignments assignmentsBefore = assignments_;
    for (const WindowID& id : shrunken) {
        const ManagedWindow window = *liveWindows_.find(id);
        const auto covering = geometry_.coveringFor(window, *assignments_.targetOf(window.id));
        const auto own = assignments_.targetsOf(window.id);
        if (!covering || covering->targets.size() >= own.size()) continue;
        std::vector<TileTarget> kept;
        for (const auto& target : covering->targets) kept.push_back(target.id());
        const bool isPart = std::all_of(kept.begin(), kept.end(), [&](const TileTarget& target) {
            return std::find(own.begin(), own.end(), target) != own.end();
        });
        if (!isPart) continue; // the new tiles are not part of the span
        frames_.noteSpanGivenBack(window.id);
        (void)assignments_.assign(window.id, kept);
    }
    if (!shrunken.empty()) bringNextForward(assignmentsBefore);
}

/// While rules are switched off, nothing is recorded, so that rules can still move the window once they are switched
/// on.
void TileKeeper::exemptFromRules(const WindowID& windowID) {
    if (*state_.continuousManagementEnabled) tileMemory_.noteHandledByRules(windowID);
}

/// Does nothing in focus mode: the end of focus mode restores the snapshot, and the poll after that finds the tiles
/// that have lost their window.
void TileKeeper::bringNextForward(const TileAssignments& before) {
    if (!*state_.bringsNextForward || focusMode_.isOn() || !access_.mayMoveWindows()) return;
    for (const auto& candidates : tileMemory_.stackPromotion().candidates(before, assignments_)) {
        (void)std::ranges::any_of(candidates, [this](const Promotion& promotion) { return bringForward(promotion); });
    }
}

/// Places the window in the tile if that displaces no other window. Returns false if it does, or if the window cannot
/// be shown.
bool TileKeeper::bringForward(const Promotion& promotion) {
    const ManagedWindow* live = liveWindows_.find(promotion.windowID);
    if (!live || live->isFullScreen || presenter_.isOffScreen(*live)) return false;
    const ManagedWindow window = *live;
    const auto covering = geometry_.coveringFor(window, promotion.target);
    const bool isFree =
        covering && std::none_of(covering->targets.begin(), covering->targets.end(),
                                 [&](const auto& t) { return assignments_.assignedWindowIDs.contains(t.id()); });
    if (!isFree) return false;
    presenter_.restore(window);
    place(window, *covering, AccessibilityWindowService::BringToFront::no);
    return true;
}

/// Removes windows that have a tile, or whose process has ended, from the floating windows. Other windows stay floating
/// even if they are not listed: before and after a sleep, desktops report open windows as closed.
void TileKeeper::keepFloatingValid() {
    const auto hasEnded = [&](const WindowID& id) {
        pid_t process = 0;
        // A window id begins with the process id.
        std::from_chars(id.text().data(), id.text().data() + id.text().size(), process);
        return !liveWindows_.find(id) && !services_.applications.runningApplication(process);
    };
    floating_.dropIf([&](const WindowID& id) { return assignments_.isInAnyTile(id) || hasEnded(id); });
}

} // namespace kova
