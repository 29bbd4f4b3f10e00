// Commands for one window: planned from values, carried out in one place.
#include "workspace/WorkspaceController.h"

#include <algorithm>
#include <charconv>

namespace kova {

using BringToFront = AccessibilityWindowService::BringToFront;

WindowCommandInput WorkspaceController::windowCommandInput() const {
    WindowCommandInput input{.windows = liveWindows_.all(),
                             .tiles = tiles(),
                             .screens = *state_.screens,
                             .assignments = assignments_,
                             .floatingWindowIDs = *state_.floatingWindowIDs,
                             .focusOrder = liveWindows_.focusOrder().windowIDs(),
                             .focusedWindowID = focusedWindowID(),
                             .currentDisplayID = currentDisplayID(),
                             .displayIDByWindowID = {},
                             .covering =
                                 [this](const ManagedWindow& window, const std::string& targetID) {
                                     std::vector<std::string> targetIDs;
                                     const auto covering = coveringFor(window, targetID);
                                     if (!covering) return targetIDs;
                                     for (const auto& target : covering->targets) targetIDs.push_back(target.id());
                                     return targetIDs;
                                 },
                             .firstScreenMaxY = firstScreenMaxY()};
    for (const auto& window : liveWindows_) {
        if (const Screen* screen = screenOfWindow(window)) input.displayIDByWindowID[window.id] = displayID(*screen);
    }
    return input;
}

std::variant<WindowPlan, WindowRefusal> WorkspaceController::planCommand(const WindowCommand& command) const {
    return planWindowCommand(command, windowCommandInput());
}

Outcome WorkspaceController::carryOut(const WindowCommand& command) {
    const auto planned = planCommand(command);
    if (const auto* refusal = std::get_if<WindowRefusal>(&planned)) return refuse(refusal->reason);
    const auto& plan = std::get<WindowPlan>(planned);
    const auto carriedOut = carryOut(plan);
    return carriedOut ? done(plan.message) : carriedOut;
}

Outcome WorkspaceController::carryOut(const WindowPlan& plan) {
    if (!plan.action.empty()) {
        std::vector<std::string> applications;
        for (const auto& step : plan.steps) {
            const ManagedWindow* window = findLive(step.windowID);
            if (window && step.kind != WindowStep::Kind::wait) applications.push_back(window->applicationName);
        }
        pushUndoSnapshot({plan.action, std::move(applications)});
    }
    const TileAssignments before = assignments_;
    const auto focused = focusedWindowID();
    // The keyboard stays where it is, unless its window is among those that move.
    const bool takesKeyboard = std::ranges::any_of(
        plan.steps, [&](const WindowStep& step) { return step.windowID == focused && step.targetID; });
    // All of them first: two windows that trade places must not displace each other.
    for (const auto& step : plan.steps) {
        if (step.kind == WindowStep::Kind::place) assignments_.remove(step.windowID);
    }
    for (const auto& step : plan.steps) {
        const ManagedWindow* live = findLive(step.windowID);
        if (!live) continue;
        const ManagedWindow window = *live;
        switch (step.kind) {
        case WindowStep::Kind::place:
            placeByCommand(window, *step.targetID,
                           takesKeyboard && &step == lastPlacement(plan) ? BringToFront::yes : BringToFront::no);
            break;
        case WindowStep::Kind::wait: // placing the other one sees to it
            break;
        case WindowStep::Kind::focus:
            if (!focus(window)) return refuseSilently("The window could not be focused");
            break;
        case WindowStep::Kind::floating:
            floatByCommand(window);
            break;
        }
    }
    if (plan.steps.empty() || plan.action.empty()) return Outcome::done();
    commit({.before = before});
    return Outcome::done();
}

const WindowStep* WorkspaceController::lastPlacement(const WindowPlan& plan) {
    const WindowStep* last = nullptr;
    for (const auto& step : plan.steps) {
        if (step.kind == WindowStep::Kind::place) last = &step;
    }
    return last;
}

void WorkspaceController::placeByCommand(const ManagedWindow& window, const std::string& targetID,
                                         BringToFront bringToFront) {
    const auto covering = coveringFor(window, targetID);
    if (!covering) return;
    noteMovedByUser(window.id);
    noteHasItsPlace(window.id);
    bringBack(window);
    place(window, *covering, bringToFront);
    learnPlacementByUser(window, targetID);
}

void WorkspaceController::floatByCommand(const ManagedWindow& window) {
    noteMovedByUser(window.id);
    noteHasItsPlace(window.id);
    assignments_.remove(window.id);
    auto floating = *state_.floatingWindowIDs;
    floating.insert(window.id);
    state_.floatingWindowIDs.set(std::move(floating));
    bringBack(window); // one that waited in a stack was off the screen
}

/// Windows that are in a tile again float no more, and neither do those of a process that has ended. One that is not
/// listed, as after a sleep, may come back.
void WorkspaceController::keepFloatingValid() {
    auto floating = *state_.floatingWindowIDs;
    const auto hasEnded = [&](const std::string& id) {
        pid_t process = 0;
        std::from_chars(id.data(), id.data() + id.size(), process); // an id begins with the process
        return !findLive(id) && !services_.applications.runningApplication(process);
    };
    const auto ended = [&](const std::string& id) { return assignments_.isInAnyTile(id) || hasEnded(id); };
    if (std::erase_if(floating, ended) > 0) state_.floatingWindowIDs.set(std::move(floating));
}

/// Absent without permission, and while a window has the keyboard that is not managed.
void WorkspaceController::noteFocus() {
    liveWindows_.focusOrder().keepOnly([this](const std::string& id) { return findLive(id) != nullptr; });
    const auto process = services_.applications.frontmostApplication();
    const auto hasFocus = [&](const ManagedWindow& window) {
        return window.processIdentifier == process && window.isFocusedOfApplication;
    };
    const auto& dialogs = liveWindows_.dialogs().all();
    const auto window = std::ranges::find_if(liveWindows_.all(), hasFocus);
    const auto dialog = std::ranges::find_if(dialogs, hasFocus);
    std::optional<std::string> focused;
    if (window != liveWindows_.end()) focused = window->id;
    if (dialog != dialogs.end()) focused = liveWindows_.dialogs().ownerOf(dialog->id);
    if (focused) liveWindows_.focusOrder().note(*focused);
    state_.focusedWindowID.set(focused);
}

std::optional<std::string> WorkspaceController::windowLastFocusedOn(const std::string& wantedDisplayID) const {
    const auto planned = planCommand(command::FocusDisplay{wantedDisplayID});
    const auto* plan = std::get_if<WindowPlan>(&planned);
    return plan ? std::optional(plan->steps.front().windowID) : std::nullopt;
}

std::optional<std::string> WorkspaceController::displayIDOfWindow(const std::string& windowID) const {
    const ManagedWindow* window = findLive(windowID);
    const Screen* screen = window ? screenOfWindow(*window) : nullptr;
    return screen ? std::optional(displayID(*screen)) : std::nullopt;
}

// Requested against actual frames

/// Every cause at once; `explain` prints them.
std::vector<std::string> WorkspaceController::whyItStays(const ManagedWindow& window) const {
    WindowSituation situation;
    const auto isGranted = *state_.permissionState == AccessibilityPermissionState::granted;
    if (!isGranted)
        situation.obstacle = permissionProblem();
    else
        situation.obstacle = whyNothingIsSeen();
    situation.isDragUnderWay = pointer_.isPausingPolls();
    situation.hasTile = assignments_.isAssigned(window.id);
    situation.leftAlone = whyLeftAlone(window);
    situation.refusal = frames_.refusal(window.id);
    situation.attempts = FrameKeeper::kAttempts;
    situation.isPlacementPending = windowService_->pendingFrame(window.id).has_value();
    situation.isFloating = state_.floatingWindowIDs->contains(window.id);
    if (isExcludedByRules(window)) {
        const WorkspaceRule& rule = (*state_.rules)[*decidingRule(*state_.rules, window)];
        situation.rule = "“" + rule.name + "” says " + kova::describe(rule.disposition);
    }
    situation.isDisplayAwaited = isAwaitedHome(window.id);
    const bool isInTile = assignments_.isInAnyTile(window.id);
    situation.isAwaitedByLaunch = !isInTile && std::ranges::any_of(awaited_.launches(), [&](const auto& entry) {
        return entry.second.isAwaiting(window);
    });
    situation.isAwaitedByScene = !isInTile && std::ranges::any_of(awaited_.scene().pending, [&](const auto& pending) {
        return pending.window.bundleIdentifier && pending.window.bundleIdentifier == window.bundleIdentifier;
    });
    return kova::whyItStays(situation);
}

std::vector<PlacementFinding> WorkspaceController::verifyPlacements() const {
    constexpr double kTolerancePoints = 2;
    std::vector<PlacementFinding> findings;
    for (const auto& [windowID, requested] : framesOfTiledWindows()) {
        const ManagedWindow* window = findLive(windowID);
        if (!window) continue;
        PlacementFinding finding{windowID, *assignments_.targetOf(windowID), requested, window->frame, {}};
        using enum PlacementVerdict;
        if (isLeftAlone(*window) || !window->isVisible) {
            finding.verdict = leftAlone;
        } else if (finding.actualFrame && nearlyEqual(*finding.actualFrame, requested, kTolerancePoints)) {
            finding.verdict = asRequested;
        } else {
            finding.verdict = windowService_->pendingFrame(windowID) ? underWay : drifted;
        }
        findings.push_back(std::move(finding));
    }
    return findings;
}

Outcome WorkspaceController::repairPlacements() {
    for (const auto& finding : verifyPlacements()) {
        const ManagedWindow* window = findLive(finding.windowID);
        if (!window || finding.verdict != PlacementVerdict::drifted) continue;
        frames_.forgetRefusal(finding.windowID); // it is asked as often as at first
        writeFrame(ManagedWindow(*window), finding.requestedFrame, BringToFront::no);
    }
    return Outcome::done();
}

} // namespace kova
