// Windows that refuse their tiles: what they show of their minimum sizes is remembered, given room within bounds, and
// forgotten when it proves to be no longer so.
#include "workspace/WorkspaceController.h"

#include <algorithm>
#include <utility>

namespace kova {

namespace {

constexpr double kRefusalPoints = 2;

} // namespace

/// A window that did not shrink tells its minimum in the directions in which it stayed larger than asked for.
void WorkspaceController::minimumSizeObserved(const std::string& windowID, const CGRect& wanted, const CGRect& actual) {
    const ManagedWindow* window = findLive(windowID);
    if (!window || window->isFullScreen) return;
    CGSize minimum = minimumSizeOf(*window);
    const CGSize before = minimum;
    if (actual.size.width > wanted.size.width + kRefusalPoints)
        minimum.width = std::max(minimum.width, actual.size.width);
    if (actual.size.height > wanted.size.height + kRefusalPoints) {
        minimum.height = std::max(minimum.height, actual.size.height);
    }
    if (minimum == before) return makeRoomFor(ManagedWindow(*window)); // known, and yet it does not fit
    minimumsToApply_[windowID] = minimum;
    reflow(windowID);
}

/// Now, or as soon as the display may be laid out again; not at all when the window has asked often enough.
void WorkspaceController::reflow(const std::string& windowID) {
    const auto minimum = minimumsToApply_.find(windowID);
    const ManagedWindow* window = findLive(windowID);
    const auto target = assignments_.targetOf(windowID);
    const Screen* screen = target ? screenOfTarget(*target) : nullptr;
    if (minimum == minimumsToApply_.end() || !window || !screen || !mayMoveWindows()) return;
    const Seconds now = services_.queue.uptime();
    const auto due = reflow_.nextReflow(displayID(*screen), windowID, now);
    if (!due) return;
    if (*due > now) {
        services_.queue.after(*due - now, lifetime_.guard([this, windowID] { reflow(windowID); }));
        return;
    }
    reflow_.noteReflow(displayID(*screen), windowID, now);
    auto observed = *state_.observedMinimumSizes;
    observed[windowID] = minimum->second;
    state_.observedMinimumSizes.set(std::move(observed));
    WorkspaceProfile profile = *state_.profile;
    profile.applicationMinimumSizes[applicationKey(window->applicationName, window->bundleIdentifier)] =
        minimum->second;
    setProfile(std::move(profile));
    minimumsToApply_.erase(minimum);
    makeRoomFor(ManagedWindow(*window));
}

/// The tiles are solved again with what was learnt; where that is not enough the window claims a span.
void WorkspaceController::makeRoomFor(const ManagedWindow& window) {
    if (!assignments_.isAssigned(window.id) || suspension_.isSuspended()) return; // then a later poll does it
    state_.layoutRevision.set(*state_.layoutRevision + 1);
    claimRoomWhereNeeded(window.id);
    reapplyTileFrames();
    services_.accessibility.flush();
}

/// Windows that their tiles are too small for claim spans, `first` before all others. Ends, as every claim takes tiles
/// that the window did not have.
void WorkspaceController::claimRoomWhereNeeded(const std::string& first) {
    bool hasClaimed = false;
    for (const Screen& screen : std::vector<Screen>(*state_.screens)) {
        if (*state_.focusMode && (*state_.focusMode)->displayID == displayID(screen)) continue;
        std::set<std::string> done; // once each, so that two windows cannot take turns
        while (const auto claim = nextClaimOn(screen, first, done)) {
            done.insert(claim->first.id);
            moveOutOfTheWay(screen, *claim);
            place(claim->first, claim->second, AccessibilityWindowService::BringToFront::no);
            hasClaimed = true;
        }
    }
    if (hasClaimed) publishAssignments();
}

std::optional<std::pair<ManagedWindow, WorkspaceController::Covering>>
WorkspaceController::nextClaimOn(const Screen& screen, const std::string& first,
                                 const std::set<std::string>& done) const {
    const TileRoom room = roomOn(screen);
    auto cramped = room.cramped();
    std::ranges::stable_partition(cramped, [&](const std::string& id) { return id == first; });
    for (const auto& windowID : cramped) {
        const ManagedWindow* window = findLive(windowID);
        const auto anchor = assignments_.targetOf(windowID);
        if (done.contains(windowID) || !window || !anchor || isLeftAlone(*window)) continue;
        const auto slot = slotIDOn(displayID(screen), *anchor);
        if (!slot) continue;
        const auto slots = room.tilesFor(windowID, minimumSizeOf(*window), std::string(*slot));
        const auto own = assignments_.targetsOf(windowID);
        const bool isMore = std::ranges::any_of(slots, [&](const std::string& id) {
            return std::ranges::find(own, tileTargetID(displayID(screen), id)) == own.end();
        });
        const auto losers = room.holdersOf(slots, windowID);
        const bool takesFromFullScreen = std::ranges::any_of(losers, [&](const std::string& id) {
            const ManagedWindow* loser = findLive(id);
            return loser && loser->isFullScreen;
        });
        if (!isMore || takesFromFullScreen) continue;
        if (auto covering = coveringOn(screen, slots)) return std::pair{*window, *std::move(covering)};
    }
    return std::nullopt;
}

/// Windows that a claim takes tiles from go to tiles that are free, as far as they fit there; the others will wait
/// behind it.
void WorkspaceController::moveOutOfTheWay(const Screen& screen, const std::pair<ManagedWindow, Covering>& claim) {
    std::vector<std::string> claimed;
    for (const auto& target : claim.second.targets) claimed.push_back(target.slot.id);
    for (const auto& windowID : roomOn(screen).holdersOf(claimed, claim.first.id)) {
        const ManagedWindow* live = findLive(windowID);
        if (!live || isLeftAlone(*live)) continue;
        const ManagedWindow window = *live;
        TileAssignments before = assignments_;
        assignments_.remove(windowID);
        std::vector<std::string> targets;
        for (const auto& target : claim.second.targets) targets.push_back(target.id());
        (void)assignments_.assign(claim.first.id, targets);
        auto covering = freeCoveringOn(screen, window);
        assignments_ = std::move(before);
        if (covering) place(window, *covering, AccessibilityWindowService::BringToFront::no);
    }
}

/// The first free tile, or span of free tiles, that has room for the window.
std::optional<WorkspaceController::Covering> WorkspaceController::freeCoveringOn(const Screen& screen,
                                                                                 const ManagedWindow& window) const {
    const TileRoom room = roomOn(screen);
    for (const auto& slot : solvedTiles(screen).slots) {
        const auto slots = room.tilesFor(window.id, minimumSizeOf(window), slot.id);
        const bool isFree =
            room.holdersOf(slots, window.id).empty() && std::ranges::none_of(slots, [&](const auto& id) {
                return assignments_.stackWindowIDsByTarget.contains(tileTargetID(displayID(screen), id));
            });
        if (isFree) return coveringOn(screen, slots);
    }
    return std::nullopt;
}

/// A window that has stayed well below its remembered minimum does not need it any more.
void WorkspaceController::relaxMinimums() {
    auto observed = *state_.observedMinimumSizes;
    for (auto& [windowID, minimum] : observed) {
        const ManagedWindow* window = findLive(windowID);
        const bool isResting = window && window->frame && window->isVisible && !windowService_->pendingFrame(windowID);
        if (!isResting) continue;
        const auto relaxed = reflow_.relaxedMinimum(windowID, minimum, window->frame->size, services_.queue.uptime());
        if (!relaxed) continue;
        minimum = *relaxed;
        WorkspaceProfile profile = *state_.profile;
        profile.applicationMinimumSizes[applicationKey(window->applicationName, window->bundleIdentifier)] = *relaxed;
        setProfile(std::move(profile));
        reflow_.forgetPushes(windowID);
    }
    state_.observedMinimumSizes.set(std::move(observed));
}

/// A window that needs less than when it claimed its span keeps only as many tiles as it now needs. Not in focus mode,
/// whose end restores the tiles as they were.
void WorkspaceController::giveBackSpans() {
    if (*state_.focusMode) return;
    const auto& anchors = assignments_.anchorTargetIDsByWindowID;
    std::erase_if(minimumsOfSpanning_, [&](const auto& entry) { return !anchors.contains(entry.first); });
    std::vector<ManagedWindow> modest;
    for (const auto& [windowID, anchor] : anchors) {
        const ManagedWindow* window = findLive(windowID);
        if (!window) continue;
        const CGSize now = minimumSizeOf(*window);
        const CGSize then = std::exchange(minimumsOfSpanning_.try_emplace(windowID, now).first->second, now);
        const bool needsLess = now.width < then.width || now.height < then.height;
        if (needsLess && reflow_.mayGiveBackSpan(windowID)) modest.push_back(*window);
    }
    for (const ManagedWindow& window : modest) {
        const auto covering = coveringFor(window, *assignments_.targetOf(window.id));
        const auto own = assignments_.targetsOf(window.id);
        if (!covering || covering->targets.size() >= own.size()) continue;
        std::vector<std::string> kept;
        for (const auto& target : covering->targets) kept.push_back(target.id());
        const bool isPart = std::all_of(kept.begin(), kept.end(), [&](const std::string& target) {
            return std::find(own.begin(), own.end(), target) != own.end();
        });
        if (!isPart) continue; // it would push others out of theirs
        reflow_.noteSpanGivenBack(window.id);
        (void)assignments_.assign(window.id, kept);
    }
    if (!modest.empty()) publishAssignments();
}

} // namespace kova
