// Arranging every window of every display in one pass: plan, carry out, and a second pass for what had to be brought
// back.
#include "workspace/WorkspaceController.h"

#include "workspace/PlacementObedience.h"
#include "workspace/VisibleArea.h"
#include "workspace/WorkspacePreferences.h"

#include <algorithm>
#include <cstdlib>
#include <limits>

namespace kova {

namespace {

using BringToFront = AccessibilityWindowService::BringToFront;

constexpr Seconds kFollowUpDelay{0.85};

std::string nameOf(const ManagedWindow& window) {
    return window.title.empty() ? window.applicationName : window.applicationName + " “" + window.title + "”";
}

} // namespace

bool WorkspaceController::arrange() {
    if (!requireWindowAccess()) return false;
    pushUndoSnapshot({"arrange", applicationsOn(std::nullopt)});
    const auto obstacle = whyWindowsStay(); // as far as the arrangements before this one have shown
    arrangeWindows();
    showStatusMessage(obstacle.value_or("Windows arranged into zones — Undo is available"));
    return true;
}

std::optional<std::string> WorkspaceController::whyWindowsStay() const {
    constexpr std::string_view kWayOut =
        "Only windows that float there can be arranged; use KOVA with a window manager "
        "that lets windows float.";
    if (const auto name = services_.accessibility.placingManager()) {
        return *name + " places windows itself, so they stay where it puts them. " + std::string(kWayOut);
    }
    std::vector<PlacedWindow> placed;
    const auto frames = framesOfTiledWindows();
    for (const ManagedWindow& window : liveWindows_) {
        const auto wanted = frames.find(window.id);
        if (wanted == frames.end() || !window.isVisible || !window.frame || isLeftAlone(window)) continue;
        const auto refusal = refusals_.find(window.id);
        const bool wasAskedEnough =
            refusal != refusals_.end() && refusal->second.attempts >= kPlacementAttempts && !refusal->second.isAccepted;
        placed.push_back({wanted->second, *window.frame, wasAskedEnough});
    }
    if (!isPlacingIgnored(placed)) return std::nullopt;
    return "No window goes where it is sent: the window manager places them itself. " + std::string(kWayOut);
}

/// Absent for windows that take no part: those whose display may be back in a moment, full-screen ones, those on
/// another virtual desktop, those that float by command, and those that a rule lets float or ignores.
std::optional<ArrangementCandidate> WorkspaceController::candidateFor(const ManagedWindow& window,
                                                                      const TileAssignments& assignments) const {
    const bool isHidden = windowService_->isApplicationHidden(window.processIdentifier);
    const bool isOffScreen = !window.isVisible && !window.isMinimized && !isHidden && window.frame;
    if (window.isFullScreen || window.isElsewhere || isOffScreen || isExcludedByRules(window) ||
        isAwaitedHome(window.id) || state_.floatingWindowIDs->contains(window.id)) {
        return std::nullopt;
    }
    ArrangementCandidate candidate;
    candidate.window = window;
    candidate.applicationKey = applicationKey(window.applicationName, window.bundleIdentifier);
    candidate.role = classifyApplication(window.applicationName, window.bundleIdentifier);
    candidate.currentTargetID = assignments.targetOf(window.id);
    if (!candidate.currentTargetID) candidate.stackedBehindID = assignments.stackTargetOf(window.id);
    if (window.frame) candidate.frameOnScreen = flipped(*window.frame, firstScreenMaxY());
    const Screen* holding = screenShowing(*state_.screens, candidate.frameOnScreen);
    if (!holding && candidate.currentTargetID) holding = screenOfTarget(*candidate.currentTargetID);
    if (holding) candidate.displayID = displayID(*holding);
    candidate.minimumSize = minimumSizeOf(window, WindowSizes::Purpose::nextArrangement);
    candidate.rule = tileOfRule(window);
    candidate.isDeferred = window.isMinimized || isHidden;
    return candidate;
}

ArrangementInput WorkspaceController::arrangementInput(const std::vector<ManagedWindow>& windows,
                                                       const TileAssignments& assignments) const {
    ArrangementInput input;
    input.learning = learning_;
    input.preferredApplications = state_.profile->preferredApplications;
    input.tileInset = state_.profile->tileInset;
    for (const auto& screen : *state_.screens) {
        ArrangementDisplay display;
        display.displayID = displayID(screen);
        display.name = screen.localizedName;
        display.visibleFrame = screen.visibleFrame;
        display.layout = layouts_.resolve(screen, *state_.profile, catalogue());
        display.solved = solveDefinition(display.layout, {}, screen.visibleFrame.size, input.tileInset);
        input.displays.push_back(std::move(display));
    }
    for (const auto& window : windows) {
        if (auto candidate = candidateFor(window, assignments)) input.candidates.push_back(std::move(*candidate));
        if (isAwaitedHome(window.id)) {
            input.leftAlone.push_back({window, nameOf(window) + " is left alone for a moment: its display was "
                                                                "unplugged just now and may come back"});
        }
        if (!window.isFullScreen || window.isElsewhere) continue; // the tiles of other Spaces are free here
        for (const auto& target : assignments.targetsOf(window.id)) {
            for (auto& display : input.displays) {
                if (const auto slot = slotIDOn(display.displayID, target)) display.reservedSlotIDs.emplace(*slot);
            }
        }
    }
    return input;
}

ArrangementPlan WorkspaceController::planArrangement() const {
    if (!focusZoomSnapshot_) return kova::planArrangement(arrangementInput(liveWindows_, assignments_));
    // Arranging gives the display back first.
    const TileAssignments restored = {focusZoomSnapshot_->assignedWindowIDs, focusZoomSnapshot_->stackWindowIDsByTarget,
                                      focusZoomSnapshot_->placementAnchors};
    return kova::planArrangement(arrangementInput(windowsAsIn(*focusZoomSnapshot_), restored));
}

void WorkspaceController::arrangeWindows() {
    if (*state_.permissionState != AccessibilityPermissionState::granted || state_.screens->empty()) return;
    if (autoArrangeGeneration_ == std::numeric_limits<std::int64_t>::max()) std::abort();
    const auto generation = ++autoArrangeGeneration_;
    closeFocusMode();
    spaces_.store(liveWindows_, assignments_);
    lastArrangement_ = planArrangement();
    sizes_.beginArrangement();
    publishMinimums();
    reflow_.forgetAllPushes();
    carryOut(lastArrangement_);
    services_.accessibility.flush();

    std::vector<AutoArrangePlacement> deferred;
    std::copy_if(lastArrangement_.placements.begin(), lastArrangement_.placements.end(), std::back_inserter(deferred),
                 [](const AutoArrangePlacement& placement) { return placement.isDeferred; });
    const Seconds delay = deferred.empty() ? Seconds{0} : kFollowUpDelay;
    services_.queue.after(delay, lifetime_.guard([this, deferred = std::move(deferred), generation]() mutable {
        carryOutDeferred(std::move(deferred), generation);
    }));
    learnFrom(lastArrangement_);
}

void WorkspaceController::carryOut(const ArrangementPlan& plan) {
    TileAssignments next = assignmentsOnAbsentDisplays();
    for (const auto& window : liveWindows_) { // a full-screen window keeps its tile
        if (window.isFullScreen) next.adopt(window.id, assignments_);
    }
    for (const auto& placement : plan.placements) next.remove(placement.window.id);
    for (const auto& surplus : plan.surplus) next.remove(surplus.window.id);
    for (const auto& placement : plan.placements) {
        std::vector<std::string> claimed;
        for (const auto& target : placement.claimedTargets) claimed.push_back(target.id());
        using Position = TileAssignments::StackPosition;
        next.insertIntoStack(placement.target.id(), placement.window.id,
                             placement.isPrimary ? Position::front : Position::behind);
        (void)next.assign(placement.window.id, claimed); // a plan gives no tile twice
    }
    assignments_ = std::move(next);
    publishAssignments();
    state_.lastArrangeExplanation.set(plan.explanation());

    for (const auto& surplus : plan.surplus) {
        if (!surplus.window.isMinimized) minimizeWindow(surplus.window);
    }
    for (const auto& placement : plan.placements) {
        if (!placement.isDeferred) {
            carryOutPlacement(placement);
        } else if (placement.isPrimary) {
            windowService_->unhideApplication(placement.window.processIdentifier);
            windowService_->unminimize(placement.window);
            // It goes on counting as minimised until it is seen, so that another arrangement waits for it as well.
            if (ManagedWindow* live = findLive(placement.window.id)) live->isVisible = true;
        }
    }
}

void WorkspaceController::carryOutPlacement(const AutoArrangePlacement& placement) {
    const ManagedWindow* live = findLive(placement.window.id);
    if (!live) return;
    if (placement.isPrimary) {
        place(*live, {placement.claimedTargets}, BringToFront::no);
        retryMinimum(placement.window.id);
        return;
    }
    assignments_.insertIntoStack(placement.target.id(), live->id, TileAssignments::StackPosition::behind);
    presentDisplaced({live->id});
}

void WorkspaceController::carryOutDeferred(std::vector<AutoArrangePlacement> deferred, std::int64_t generation) {
    if (generation != autoArrangeGeneration_ || deferred.empty()) return;
    if (!mayMoveWindows()) return;
    closeFocusMode();
    for (const auto& placement : deferred) {
        // Meanwhile the user may have given its tile to another window.
        if (assignments_.targetOf(placement.window.id) == placement.target.id()) carryOutPlacement(placement);
    }
    publishAssignments();
    services_.accessibility.flush();
}

void WorkspaceController::learnFrom(const ArrangementPlan& plan) {
    for (const auto& placement : plan.placements) {
        if (placement.isPrimary) learn(placement.window, placement.target.id());
    }
}

void WorkspaceController::learn(const ManagedWindow& window, const std::string& targetID) {
    const Screen* screen = screenOfTarget(targetID);
    if (!screen) return;
    const std::string layoutID = layouts_.resolve(*screen, *state_.profile, catalogue()).id;
    const auto slotID = slotIDOn(displayID(*screen), targetID);
    learning_.learn(layoutID, applicationKey(window.applicationName, window.bundleIdentifier), std::string(*slotID));
    if (isLearningSavePending_) return;
    isLearningSavePending_ = true;
    // After the windows have been told to move: what was learnt can wait for that.
    services_.queue.post(lifetime_.guard([this] {
        isLearningSavePending_ = false;
        saveLearning(services_.preferences, learning_);
    }));
}

} // namespace kova
