#include "workspace/Arrangement.h"

#include "workspace/PlacementObedience.h"
#include "workspace/RuleMatching.h"
#include "workspace/VisibleArea.h"
#include "workspace/WindowNames.h"
#include "workspace/WorkspaceParts.h"

#include <algorithm>
#include <utility>

namespace kova {

using BringToFront = AccessibilityWindowService::BringToFront;

namespace {

constexpr Seconds kFollowUpDelay{0.85};

/// Whether the window's minimum size is its present size. An arrangement treats such a window as one of fixed size.
bool isAtItsMinimum(const ManagedWindow& window) {
    constexpr double kFixedSizePoints = 1;
    return window.minimumSize && window.frame &&
           window.minimumSize->width >= window.frame->size.width - kFixedSizePoints &&
           window.minimumSize->height >= window.frame->size.height - kFixedSizePoints;
}

constexpr Seconds kStartupArrangementDelay{0.3};

/// Windows that stay in the stack of their tile keep their order; other windows come after them.
std::vector<const AutoArrangePlacement*> inStackingOrder(const std::vector<AutoArrangePlacement>& placements,
                                                         const TileAssignments& before) {
    const auto position = [&](const AutoArrangePlacement* placement) {
        const auto stack = before.stackWindowIDsByTarget.find(placement->target.id());
        if (stack == before.stackWindowIDsByTarget.end()) return std::ptrdiff_t{0};
        return std::ranges::find(stack->second, placement->window.id) - stack->second.begin();
    };
    std::vector<const AutoArrangePlacement*> ordered;
    for (const auto& placement : placements) ordered.push_back(&placement);
    std::ranges::stable_sort(ordered, {}, position);
    return ordered;
}

} // namespace

Arrangement::Arrangement(WorkspaceParts& parts, WorkspaceAccess& access, TileGeometry& geometry,
                         const WindowFinder& finder, WindowPresenter& presenter, TileKeeper& keeper,
                         const Snapshots& snapshots, UndoSteps& steps) :
    services_(parts.services),
    windowService_(*parts.windowService), state_(parts.state), liveWindows_(parts.liveWindows),
    assignments_(parts.assignments), tileMemory_(parts.tileMemory), displays_(parts.displays),
    focusMode_(parts.focusMode), floating_(parts.floating), pointer_(parts.pointer), frames_(parts.frames),
    arrangementMemory_(parts.arrangementMemory), access_(access), geometry_(geometry), finder_(finder),
    presenter_(presenter), keeper_(keeper), snapshots_(snapshots), steps_(steps) {}

Outcome Arrangement::arrange() {
    if (state_.screens->empty()) return access_.refuse("No display is connected");
    if (!hasWindowToArrange()) return access_.refuse(std::string(kNothingToArrange));
    steps_.pushUndoSnapshot({std::string(action::Arrange::kTraits.undoLabel), geometry_.applicationsOn(std::nullopt)});
    // The arrangement forgets refused requests, and `whyWindowsStay` needs them, so it is called first.
    const auto obstacle = whyWindowsStay();
    arrangeWindows();
    return Outcome::done(obstacle.value_or("Windows arranged into zones — Undo is available"));
}

std::optional<std::string> Arrangement::whyWindowsStay() const {
    constexpr std::string_view kAdvice =
        "Only windows that float there can be arranged; use KOVA with a window manager "
        "that lets windows float.";
    if (const auto name = services_.accessibility.placingManager()) {
        return *name + " places windows itself, so they stay where it puts them. " + std::string(kAdvice);
    }
    std::vector<PlacedWindow> placed;
    const auto frames = geometry_.framesOfTiledWindows();
    for (const ManagedWindow& window : liveWindows_) {
        const auto wanted = frames.find(window.id);
        if (wanted == frames.end() || !window.isVisible || !window.frame || presenter_.isLeftAlone(window)) continue;
        const RefusedFrame* refusal = frames_.refusal(window.id);
        const bool hasRefusedAllAttempts = refusal && !refusal->isAccepted;
        placed.push_back({wanted->second, *window.frame, hasRefusedAllAttempts});
    }
    if (!isPlacingIgnored(placed)) return std::nullopt;
    return "No window goes where it is sent: the window manager places them itself. " + std::string(kAdvice);
}

bool Arrangement::hasWindowToArrange() const {
    return !state_.screens->empty() &&
           std::any_of(liveWindows_.begin(), liveWindows_.end(),
                       [this](const auto& window) { return candidateFor(window, assignments_).has_value(); });
}

/// Absent for a window that the arrangement does not move, because:
/// - the window is in full screen, or cannot be shown (for example, it is on another Space),
/// - its display was just disconnected, or
/// - the window floats by command, or a rule makes it float or ignores it.
std::optional<ArrangementCandidate> Arrangement::candidateFor(const ManagedWindow& window,
                                                              const TileAssignments& assignments) const {
    const bool isHidden = windowService_.isApplicationHidden(window.processIdentifier);
    if (window.isFullScreen || presenter_.isOffScreen(window) || isExcludedByRules(window) ||
        displays_.isWaitingForItsDisplay(window.id) || floating_.contains(window.id)) {
        return std::nullopt;
    }
    ArrangementCandidate candidate;
    candidate.window = window;
    candidate.applicationKey = applicationKey(window.applicationName, window.bundleIdentifier);
    candidate.role = classifyApplication(window.applicationName, window.bundleIdentifier);
    candidate.currentTarget = assignments.targetOf(window.id);
    if (!candidate.currentTarget) candidate.stackTarget = assignments.stackTargetOf(window.id);
    if (window.frame) candidate.frameOnScreen = flipped(*window.frame, geometry_.firstScreenMaxY());
    const Screen* screen = screenShowing(*state_.screens, candidate.frameOnScreen);
    if (!screen && candidate.currentTarget) screen = geometry_.screenOfTarget(*candidate.currentTarget);
    if (screen) candidate.displayID = displayID(*screen);
    candidate.minimumSize = geometry_.minimumSizeOf(window, WindowSizes::Purpose::nextArrangement);
    candidate.rule = tileOfRule(window);
    candidate.isFixedSize = isAtItsMinimum(window);
    candidate.isShowRequested = liveWindows_.isShowRequested(window.id);
    candidate.isDeferred = !candidate.isShowRequested && (window.isMinimized || isHidden);
    return candidate;
}

ArrangementInput Arrangement::arrangementInput(const std::vector<ManagedWindow>& windows,
                                               const TileAssignments& assignments) const {
    ArrangementInput input;
    input.learning = *arrangementMemory_.learning();
    input.preferredApplications = state_.profile->preferredApplications;
    input.tileInset = state_.profile->tileInset;
    for (const auto& screen : *state_.screens) {
        ArrangementDisplay display;
        display.displayID = displayID(screen);
        display.name = screen.localizedName;
        display.visibleFrame = screen.visibleFrame;
        display.layout = geometry_.layoutOn(screen);
        display.solved = solveDefinition(display.layout, {}, screen.visibleFrame.size, input.tileInset);
        input.displays.push_back(std::move(display));
    }
    std::vector<WindowID> focusOrder = liveWindows_.focusOrder().windowIDs();
    if (const auto focused = finder_.focusedWindowID()) focusOrder.insert(focusOrder.begin(), *focused);
    for (const auto& window : windows) {
        if (auto candidate = candidateFor(window, assignments)) {
            const auto used = std::find(focusOrder.begin(), focusOrder.end(), window.id);
            if (used != focusOrder.end()) candidate->useRank = static_cast<std::size_t>(used - focusOrder.begin());
            input.candidates.push_back(std::move(*candidate));
        }
        if (displays_.isWaitingForItsDisplay(window.id)) {
            input.leftAlone.push_back({window, nameOf(window) + " is left alone for a moment: its display was "
                                                                "unplugged just now and may come back"});
        }
        if (!window.isFullScreen || window.isElsewhere) continue; // a full-screen window elsewhere reserves no tile
        for (const auto& target : assignments.targetsOf(window.id)) {
            for (auto& display : input.displays) {
                if (target.display == display.displayID) display.reservedSlotIDs.insert(target.slot);
            }
        }
    }
    return input;
}

ArrangementPlan Arrangement::planArrangement() const {
    const WorkspaceUndoSnapshot* before = focusMode_.snapshot();
    if (!before) return kova::planArrangement(arrangementInput(liveWindows_.all(), assignments_));
    // An arrangement ends focus mode first, so the plan starts from the state before focus mode.
    return kova::planArrangement(arrangementInput(snapshots_.windowsAsIn(*before), before->tiles));
}

void Arrangement::arrangeWindows() {
    if (*state_.permissionState != AccessibilityPermissionState::granted || state_.screens->empty()) return;
    tileMemory_.storeElsewhere(liveWindows_.all(), assignments_);
    displays_.noteArrangement(assignments_);
    arrangementMemory_.notePlan(planArrangement());
    const ArrangementPlan& plan = arrangementMemory_.lastPlan();
    frames_.beginArrangement();
    keeper_.publishMinimums();
    carryOutArrangement(plan);
    std::vector<WindowID> behind;
    for (const auto& placement : plan.placements) {
        if (!placement.isPrimary) behind.push_back(placement.window.id);
    }
    keeper_.commit({.displaced = std::move(behind),
                    .resetsLimits = true,
                    .endsArrangement = true,
                    .correctedDrift = kNoCorrection});

    if (std::ranges::any_of(plan.placements, &AutoArrangePlacement::isDeferred)) {
        services_.queue.after(kFollowUpDelay,
                              lifetime_.guard([this, generation = arrangementMemory_.newestGeneration()] {
                                  carryOutDeferred(generation);
                              }));
    }
    learnFrom(plan);
    tileMemory_.noteArranged(assignments_);
}

void Arrangement::carryOutArrangement(const ArrangementPlan& plan) {
    TileAssignments next = assignmentsOnDisconnectedDisplays();
    for (const auto& window : liveWindows_) { // a full-screen window keeps its tile
        if (window.isFullScreen) next.adopt(window.id, assignments_);
    }
    for (const auto& placement : plan.placements) next.remove(placement.window.id);
    for (const auto& surplus : plan.surplus) next.remove(surplus.window.id);
    for (const AutoArrangePlacement* placement : inStackingOrder(plan.placements, assignments_)) {
        std::vector<TileTarget> claimed;
        for (const auto& target : placement->claimedTargets) claimed.push_back(target.id());
        using Position = TileAssignments::StackPosition;
        next.insertIntoStack(placement->target.id(), placement->window.id,
                             placement->isPrimary ? Position::front : Position::behind);
        (void)next.assign(placement->window.id, claimed); // a plan gives no tile twice
    }
    const TileAssignments before = std::exchange(assignments_, std::move(next));
    state_.lastArrangeExplanation.set(plan.explanation());

    for (const auto& surplus : plan.surplus) {
        if (!surplus.window.isMinimized) presenter_.minimizeWindow(surplus.window);
    }
    showExcludedFromStacks(before);
    const auto frames = geometry_.framesOfTiledWindows();
    for (const auto& placement : plan.placements) {
        if (!placement.isPrimary) continue; // the commit hides stacked windows
        if (!placement.isDeferred) {
            presentPlacement(placement, frames);
        } else {
            presenter_.unhideApplicationOf(placement.window);
            windowService_.unminimize(placement.window);
            presenter_.requestPresentation(placement.window.id, WindowPresentation::shown);
        }
    }
}

/// Shows windows that were hidden behind another one, and that have no tile any more because a rule excludes them.
void Arrangement::showExcludedFromStacks(const TileAssignments& before) {
    std::vector<ManagedWindow> excluded;
    for (const ManagedWindow& window : liveWindows_) {
        const bool wasBehind = !before.isAssigned(window.id) && before.stackTargetOf(window.id);
        const bool isHiddenByUser = window.isMinimized && !liveWindows_.minimized().contains(window.id);
        const bool isHidden = !window.isVisible && !window.isElsewhere && !isHiddenByUser;
        if (wasBehind && isHidden && !assignments_.isInAnyTile(window.id) && isExcludedByRules(window))
            excluded.push_back(window);
    }
    for (const ManagedWindow& window : excluded) presenter_.restore(window);
}

/// Requests the window's frame. The assignments already contain the window.
void Arrangement::presentPlacement(const AutoArrangePlacement& placement, const std::map<WindowID, CGRect>& frames) {
    const ManagedWindow* live = liveWindows_.find(placement.window.id);
    if (!live) return;
    tileMemory_.noteInFront(live->id);
    const auto frame = frames.find(live->id);
    if (frame != frames.end()) presenter_.writeFrame(*live, frame->second, BringToFront::no);
    if (placement.claimedTargets.size() > 1) keeper_.announceClaim(*live, {placement.claimedTargets});
    keeper_.retryMinimum(placement.window.id);
}

void Arrangement::carryOutDeferred(std::int64_t generation) {
    if (!arrangementMemory_.isNewest(generation) || !access_.mayMoveWindows()) return;
    steps_.changeOutsideFocusMode([&] {
        std::vector<WindowID> placed;
        for (const auto& placement : arrangementMemory_.lastPlan().placements) {
            if (!placement.isDeferred) continue;
            // Meanwhile the user may have put another window into the tile, or may be dragging this window.
            const WindowID& id = placement.window.id;
            if (assignments_.targetOf(id) != placement.target.id() || pointer_.isHolding(id)) continue;
            const ManagedWindow* live = liveWindows_.find(id);
            if (!live) continue;
            keeper_.place(*live, {placement.claimedTargets}, BringToFront::no);
            placed.push_back(id);
        }
        keeper_.commit({.correctedDrift = kNoCorrection});
        for (const auto& id : placed) keeper_.retryMinimum(id);
    });
}

/// Learns the slots of all windows of an application together. If each window were learned alone, it would reduce the
/// weights of the other windows' slots.
void Arrangement::learnFrom(const ArrangementPlan& plan) {
    std::map<std::pair<std::string, std::string>, std::set<SlotID>> slots; // by layout id and application key
    for (const auto& placement : plan.placements) {
        const auto place = placement.isPrimary ? geometry_.learnedPlace(placement.target.id()) : std::nullopt;
        if (!place) continue;
        const ManagedWindow& window = placement.window;
        slots[{place->layoutID, applicationKey(window.applicationName, window.bundleIdentifier)}].insert(place->slotID);
    }
    arrangementMemory_.learn([&](AutoArrangeLearningModel& model) {
        for (const auto& [key, slotIDs] : slots) model.learnArrangement(key.first, key.second, slotIDs);
    });
}

void Arrangement::learnPlacementByUser(const ManagedWindow& window, const TileTarget& target) {
    const auto place = geometry_.learnedPlace(target);
    if (!place) return;
    arrangementMemory_.learn([&](AutoArrangeLearningModel& model) {
        model.learnPlacementByUser(place->layoutID, applicationKey(window.applicationName, window.bundleIdentifier),
                                   place->slotID);
    });
}

TileAssignments Arrangement::assignmentsOnDisconnectedDisplays() const {
    TileAssignments disconnected = assignments_;
    for (const auto& tile : geometry_.tiles()) {
        if (tile.windowID) disconnected.remove(*tile.windowID);
        for (const auto& stacked : tile.stack) disconnected.remove(stacked);
    }
    return disconnected;
}

void Arrangement::scheduleStartupArrangement(bool isPermissionNew) {
    if (state_.screens->empty()) return;
    if (!arrangementMemory_.takeStartupArrangement(isPermissionNew)) return;
    // The arrangement is marked as done even if the setting is off. Switching the setting on takes effect at the next
    // start.
    if (!state_.profile->autoArrangeOnLaunch) return;
    services_.queue.after(kStartupArrangementDelay,
                          lifetime_.guard([this, generation = arrangementMemory_.newestGeneration()] {
                              if (!arrangementMemory_.isNewest(generation))
                                  return; // the user has arranged the windows or used undo meanwhile
                              if (access_.mayMoveWindows()) {
                                  steps_.changeOutsideFocusMode([this] { arrangeWindows(); });
                              } else if (access_.isSuspendedOrLocked()) {
                                  arrangementMemory_.postponeStartupArrangement(); // due again after the suspension
                              }
                          }));
}

std::optional<RuleTile> Arrangement::tileOfRule(const ManagedWindow& window) const {
    if (!*state_.continuousManagementEnabled) return std::nullopt;
    const auto deciding = decidingRule(*state_.rules, window);
    if (!deciding) return std::nullopt;
    const WorkspaceRule& rule = (*state_.rules)[*deciding];
    const auto* tile = std::get_if<disposition::Tile>(&rule.disposition);
    return tile ? std::optional(RuleTile{tile->slotID, rule.name}) : std::nullopt;
}

bool Arrangement::isExcludedByRules(const ManagedWindow& window) const {
    return *state_.continuousManagementEnabled && isExcluded(*state_.rules, window);
}

} // namespace kova
