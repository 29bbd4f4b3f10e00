// Windows that refuse their tiles: what they show of their minimum sizes is remembered, given room within bounds, and
// forgotten when it proves to be no longer so.
#include "workspace/WorkspaceController.h"

#include "workspace/WorkspacePreferences.h"

#include <algorithm>
#include <utility>

namespace kova {

namespace {

std::set<std::string> visibleIDs(const std::vector<ManagedWindow>& windows) {
    std::set<std::string> visible;
    for (const auto& window : windows) {
        if (window.isVisible) visible.insert(window.id);
    }
    return visible;
}

} // namespace

/// A window that did not shrink tells its minimum in the directions in which it stayed larger than asked for.
void WorkspaceController::minimumSizeObserved(const std::string& windowID, const CGRect& wanted, const CGRect& actual) {
    frames_.sizes().endRetry(windowID);
    ManagedWindow* window = findLive(windowID);
    if (!window || window->isFullScreen || window->isMaximized) return;
    window->frame = actual; // until now the one that it was asked for
    switch (frames_.sizes().noteRefusal(*window, wanted.size, actual.size, services_.queue.uptime())) {
    case WindowSizes::Refusal::unreliable:
        return;
    case WindowSizes::Refusal::known:
        return makeRoomFor(ManagedWindow(*window));
    case WindowSizes::Refusal::changed:
        return reflow(windowID);
    }
}

/// Now, or as soon as the display may be laid out again; not at all when the window has asked often enough.
void WorkspaceController::reflow(const std::string& windowID) {
    const ManagedWindow* window = findLive(windowID);
    const auto target = assignments_.targetOf(windowID);
    const Screen* screen = target ? screenOfTarget(*target) : nullptr;
    if (!frames_.sizes().hasPendingChange(windowID) || !window || !screen || !mayMoveWindows()) return;
    const Seconds now = services_.queue.uptime();
    const auto due = frames_.reflow().nextReflow(displayID(*screen), windowID, now);
    if (!due) return;
    if (*due > now) {
        services_.queue.after(*due - now, lifetime_.guard([this, windowID] { reflow(windowID); }));
        return;
    }
    frames_.reflow().noteReflow(displayID(*screen), windowID, now);
    if (frames_.sizes().applyChange(windowID)) rememberMinimum(*window, minimumSizeOf(*window));
    publishMinimums();
    makeRoomFor(ManagedWindow(*window));
}

/// As a first guess for other windows of the application; absent: there is none any more.
void WorkspaceController::rememberMinimum(const ManagedWindow& window, std::optional<CGSize> minimum) {
    WorkspaceProfile profile = *state_.profile;
    const auto key = applicationKey(window.applicationName, window.bundleIdentifier);
    if (minimum) {
        profile.applicationMinimumSizes[key] = *minimum;
    } else {
        profile.applicationMinimumSizes.erase(key);
    }
    setProfile(std::move(profile));
}

/// The tiles are solved again with what was learnt; where that is not enough the window claims a span.
void WorkspaceController::makeRoomFor(const ManagedWindow& window) {
    if (!assignments_.isAssigned(window.id) || pointer_.isPausingPolls()) return; // then a later poll does it
    commit({.hasMovedTiles = true, .claimant = window.id});
}

/// Windows that their tiles are too small for claim spans, `first` before all others. Ends, as every claim takes tiles
/// that the window did not have.
void WorkspaceController::claimRoomWhereNeeded(const std::string& first) {
    std::optional<std::set<std::string>> shown; // before the first claim
    for (const Screen& screen : std::vector<Screen>(*state_.screens)) {
        if (focusMode_.ownsDisplay(displayID(screen))) continue;
        std::set<std::string> done; // once each, so that two windows cannot take turns
        while (const auto claim = nextClaimOn(screen, first, done)) {
            done.insert(claim->first.id);
            if (!shown) shown = visibleIDs(liveWindows_.all());
            moveOutOfTheWay(screen, *claim);
            place(claim->first, claim->second, AccessibilityWindowService::BringToFront::no);
        }
    }
    if (!shown) return;
    // One claim may have taken a window off the screen that a later one has put into a tile again.
    for (const ManagedWindow& window : std::vector<ManagedWindow>(liveWindows_.all())) {
        if (shown->contains(window.id) && assignments_.isAssigned(window.id) && !findLive(window.id)->isVisible) {
            bringBack(window);
        }
    }
    publishAssignments();
}

std::optional<std::pair<ManagedWindow, WorkspaceController::Covering>>
WorkspaceController::nextClaimOn(const Screen& screen, const std::string& first,
                                 const std::set<std::string>& done) const {
    const TileRoom room = roomOn(screen);
    auto cramped = room.cramped();
    std::stable_partition(cramped.begin(), cramped.end(), [&](const std::string& id) { return id == first; });
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

/// A window that is smaller than it is said to need does not need that.
void WorkspaceController::noteSizesSeen() {
    for (const ManagedWindow& window : liveWindows_) {
        // The frame of a window that does not answer is the one that it was told to take.
        const bool isAtRest = window.frame && window.isVisible && window.isAnswering && !window.isMinimized &&
                              !window.isFullScreen && !windowService_->pendingFrame(window.id);
        if (!isAtRest) continue;
        const auto disproof = frames_.sizes().noteSeen(window, window.frame->size, minimumOfApplication(window));
        if (disproof.ofApplication) rememberMinimum(window, std::nullopt);
    }
    publishMinimums();
}

/// Asks a window once for the size that its tile would have if less were known of it. Where it refuses again, nothing
/// is to be seen of that; otherwise the next poll finds it smaller, and what was remembered is forgotten.
void WorkspaceController::retryMinimum(const std::string& windowID) {
    const ManagedWindow* window = findLive(windowID);
    const auto anchor = assignments_.targetOf(windowID);
    const Screen* screen = anchor ? screenOfTarget(*anchor) : nullptr;
    const auto frame = frameForWindow(windowID);
    if (!window || !screen || !frame || isLeftAlone(*window)) return;
    if (!frames_.sizes().isRetryDue(*window, minimumOfApplication(*window), services_.queue.uptime())) return;
    const SolvedLayout plain = solveDefinition(layouts_.resolve(*screen, *state_.profile, catalogue()), {},
                                               screen->visibleFrame.size, state_.profile->tileInset);
    const auto slot = std::ranges::find(plain.slots, *slotIDOn(displayID(*screen), *anchor), &TileSlot::id);
    if (slot == plain.slots.end()) return;
    const CGRect cell = plain.frames[static_cast<std::size_t>(slot - plain.slots.begin())];
    const CGSize tile = insetBy(cell, state_.profile->tileInset).size;
    const CGSize announced = window->minimumSize.value_or(CGSize{});
    const CGSize needed = minimumSizeOf(*window);
    CGRect asked = *frame;
    if (needed.width > tile.width) asked.size.width = std::max(announced.width, tile.width);
    if (needed.height > tile.height) asked.size.height = std::max(announced.height, tile.height);
    if (nearlyEqual(asked, *frame, WindowSizes::kTolerancePoints)) return; // it has the room that it needs anyway
    frames_.sizes().beginRetry(windowID);
    writeFrame(*window, asked, AccessibilityWindowService::BringToFront::no);
}

Outcome WorkspaceController::forgetApplication(const std::string& name) {
    std::map<std::string, std::string> names; // by application key
    for (const auto& [key, minimum] : state_.profile->applicationMinimumSizes) names.emplace(key, key);
    for (const auto& [layoutID, layout] : arranger_.learning()->layouts) {
        for (const auto& [key, learnt] : layout.applications) names.emplace(key, key);
    }
    for (const auto& window : liveWindows_) {
        names[applicationKey(window.applicationName, window.bundleIdentifier)] = window.applicationName;
    }
    const std::string asName = applicationKey(name, std::nullopt), asIdentifier = applicationKey("", name);
    const auto isMeant = [&](const auto& entry) {
        return entry.first == asName || entry.first == asIdentifier || applicationKey("", entry.second) == asIdentifier;
    };
    const auto isPart = [&](const auto& entry) {
        return entry.first.find(asIdentifier) != std::string::npos ||
               applicationKey("", entry.second).find(asIdentifier) != std::string::npos;
    };
    if (std::ranges::any_of(names, isMeant)) {
        std::erase_if(names, std::not_fn(isMeant));
    } else if (std::ranges::count_if(names, isPart) == 1) {
        std::erase_if(names, std::not_fn(isPart));
    } else {
        return Outcome::refused("Nothing was learned of an application “" + name + "”");
    }
    ForgottenApplications forgotten;
    WorkspaceProfile profile = *state_.profile;
    AutoArrangeLearningModel learning = *arranger_.learning();
    for (const auto& [key, shownName] : names) {
        profile.applicationMinimumSizes.erase(key);
        learning.forget(key);
        undo_.forgetApplication(key);
        focusMode_.forgetApplication(key);
        for (const auto& window : liveWindows_) {
            if (applicationKey(window.applicationName, window.bundleIdentifier) != key) continue;
            frames_.sizes().forget(window.id);
            frames_.forgetRefusal(window.id);
        }
        forgotten.names.push_back(shownName);
    }
    setProfile(std::move(profile));
    arranger_.setLearning(std::make_shared<const AutoArrangeLearningModel>(std::move(learning)));
    publishMinimums();
    frames_.reflow().forgetAllPushes();
    noteTilesMoved();
    if (mayMoveWindows()) refresh(); // the poll gives back spans and puts everything into its tile
    return Outcome::done().with(std::move(forgotten));
}

/// A window that needs less than when it claimed its span keeps only as many tiles as it now needs. Not in focus mode,
/// whose end restores the tiles as they were.
void WorkspaceController::giveBackSpans() {
    if (focusMode_.isOn()) return;
    const auto& anchors = assignments_.anchorTargetIDsByWindowID;
    const auto minimumOf = [this](const std::string& id) -> std::optional<CGSize> {
        const ManagedWindow* window = findLive(id);
        return window ? std::optional(minimumSizeOf(*window)) : std::nullopt;
    };
    const auto modest = frames_.takeShrunken(anchors, minimumOf);
    const TileAssignments assignmentsBefore = assignments_;
    for (const std::string& id : modest) {
        const ManagedWindow window = *findLive(id);
        const auto covering = coveringFor(window, *assignments_.targetOf(window.id));
        const auto own = assignments_.targetsOf(window.id);
        if (!covering || covering->targets.size() >= own.size()) continue;
        std::vector<std::string> kept;
        for (const auto& target : covering->targets) kept.push_back(target.id());
        const bool isPart = std::all_of(kept.begin(), kept.end(), [&](const std::string& target) {
            return std::find(own.begin(), own.end(), target) != own.end();
        });
        if (!isPart) continue; // it would push others out of theirs
        frames_.reflow().noteSpanGivenBack(window.id);
        (void)assignments_.assign(window.id, kept);
    }
    if (modest.empty()) return;
    bringNextForward(assignmentsBefore);
    publishAssignments();
}

} // namespace kova
