#include "workspace/WindowCommands.h"

#include "workspace/WorkspaceParts.h"

#include <algorithm>

namespace kova {

using BringToFront = AccessibilityWindowService::BringToFront;

WindowCommands::WindowCommands(WorkspaceParts& parts, WorkspaceAccess& access, TileGeometry& geometry,
                               const WindowFinder& finder, WindowPresenter& presenter, TileKeeper& keeper,
                               const Snapshots& snapshots, UndoSteps& steps, Arrangement& arrangement) :
    state_(parts.state),
    liveWindows_(parts.liveWindows), assignments_(parts.assignments), focusMode_(parts.focusMode),
    floating_(parts.floating), access_(access), geometry_(geometry), finder_(finder), presenter_(presenter),
    keeper_(keeper), snapshots_(snapshots), steps_(steps), arrangement_(arrangement) {}

Outcome WindowCommands::focusWindow(WorkspaceDirection direction, const std::optional<WindowID>& fromWindowID) {
    const auto start = finder_.startingPoint(fromWindowID);
    if (!start) return access_.refuse(*finder_.whyNoStartingPoint(fromWindowID));
    const auto target = finder_.neighborOf(*start, direction, TilesConsidered::occupied);
    const auto front = target ? assignments_.assignedWindowIDs.find(*target) : assignments_.assignedWindowIDs.end();
    const ManagedWindow* window =
        front == assignments_.assignedWindowIDs.end() ? nullptr : liveWindows_.find(front->second);
    if (!window)
        return access_.refuse("No occupied zone " + std::string(describe(direction)) + " of the focused window");
    const std::string name = window->applicationName;
    return presenter_.focus(*window) ? Outcome::done("Focused " + name)
                                     : access_.refuseSilently("The window there could not be focused");
}

Outcome WindowCommands::moveWindow(WorkspaceDirection direction, const std::optional<WindowID>& windowID) {
    const auto start = finder_.startingPoint(windowID);
    if (!start) return access_.refuse(*finder_.whyNoStartingPoint(windowID));
    if (auto reason = whyNotMovable(start->window)) return access_.refuse(*std::move(reason));
    const std::string word(describe(direction));
    const auto target = finder_.neighborOf(*start, direction, TilesConsidered::all);
    if (!target) return access_.refuse("No zone " + word + " of the focused window");
    steps_.pushUndoSnapshot({"move " + word, {start->window.applicationName}});
    keeper_.noteMovedByUser(start->window.id);
    keeper_.placeWindow(start->window.id, *target, Focusing::yes);
    arrangement_.learnPlacementByUser(start->window, *target);
    return Outcome::done("Moved " + start->window.applicationName + " to the " + word + " zone");
}

Outcome WindowCommands::cycleStack(const action::CycleStack& cycle) {
    auto cycled = finder_.cycledStack(cycle);
    if (!cycled) return access_.refuse(finder_.whyNothingNext(cycle));
    const auto& target = cycled->target;
    auto& order = cycled->order;
    const ManagedWindow* next = liveWindows_.find(order.front());
    if (!next) return access_.refuseSilently(finder_.whyNothingNext(cycle));
    const ManagedWindow window = *next;
    steps_.pushUndoSnapshot({std::string(action::CycleStack::kTraits.undoLabel), {window.applicationName}});
    const TileAssignments before = assignments_;
    presenter_.restore(window);
    keeper_.placeInTile(window.id, target, Focusing::yes);
    keeper_.bringNextForward(before);
    // A window of the stack may have come forward in a tile that the former front window had spanned.
    std::erase_if(order, [&](const WindowID& id) { return assignments_.stackTargetOf(id) != target; });
    // Windows that the placement has displaced from other tiles are now in this stack. They come last.
    for (const auto& member : assignments_.stackWindowIDsByTarget[target]) {
        if (std::find(order.begin(), order.end(), member) == order.end()) order.push_back(member);
    }
    assignments_.stackWindowIDsByTarget[target] = std::move(order);
    keeper_.commit({});
    return Outcome::done(window.applicationName + " is now active");
}

WindowCommandInput WindowCommands::windowCommandInput() const {
    const WorkspaceUndoSnapshot* beforeFocusMode = focusMode_.snapshot();
    WindowCommandInput input{.windows = beforeFocusMode ? snapshots_.windowsAsIn(*beforeFocusMode) : liveWindows_.all(),
                             .tiles = geometry_.tiles(),
                             .screens = *state_.screens,
                             .assignments = beforeFocusMode ? beforeFocusMode->tiles : assignments_,
                             .floatingWindowIDs = floating_.all(),
                             .focusOrder = liveWindows_.focusOrder().windowIDs(),
                             .focusedWindowID = finder_.focusedWindowID(),
                             .currentDisplayID = finder_.currentDisplayID(),
                             .displayIDByWindowID = {},
                             .covering =
                                 [this](const ManagedWindow& window, const TileTarget& target) {
                                     std::vector<TileTarget> targets;
                                     const auto covering = geometry_.coveringFor(window, target);
                                     if (!covering) return targets;
                                     for (const auto& covered : covering->targets) targets.push_back(covered.id());
                                     return targets;
                                 },
                             .firstScreenMaxY = geometry_.firstScreenMaxY()};
    for (const auto& window : input.windows) {
        if (const Screen* screen = geometry_.screenOfWindow(window))
            input.displayIDByWindowID[window.id] = displayID(*screen);
    }
    return input;
}

std::variant<WindowPlan, WindowRefusal> WindowCommands::planCommand(const WindowCommand& command) const {
    return planWindowCommand(command, windowCommandInput());
}

Outcome WindowCommands::runCommand(const WindowCommand& command) {
    const auto planned = planCommand(command);
    if (const auto* refusal = std::get_if<WindowRefusal>(&planned)) return access_.refuse(refusal->reason);
    const auto& plan = std::get<WindowPlan>(planned);
    const auto carriedOut = carryOutPlan(plan);
    return carriedOut ? Outcome::done(plan.message) : carriedOut;
}

Outcome WindowCommands::carryOutPlan(const WindowPlan& plan) {
    if (!plan.action.empty()) {
        std::vector<std::string> applications;
        for (const auto& step : plan.steps) {
            const ManagedWindow* window = liveWindows_.find(step.windowID);
            if (window && step.kind != WindowStep::Kind::wait) applications.push_back(window->applicationName);
        }
        steps_.pushUndoSnapshot({plan.action, std::move(applications)});
    }
    const TileAssignments before = assignments_;
    const auto focused = finder_.focusedWindowID();
    // The focus changes only if the focused window is among the windows that move.
    const bool takesFocus = std::ranges::any_of(
        plan.steps, [&](const WindowStep& step) { return step.windowID == focused && step.target; });
    // All windows leave their tiles first, so that two windows that are exchanged do not displace each other.
    for (const auto& step : plan.steps) {
        if (step.kind == WindowStep::Kind::place) assignments_.remove(step.windowID);
    }
    bool hasFocused = true;
    for (const auto& step : plan.steps) {
        const ManagedWindow* live = liveWindows_.find(step.windowID);
        if (!live) continue;
        const ManagedWindow window = *live;
        switch (step.kind) {
        case WindowStep::Kind::place: {
            const bool isMoved = plan.action != kBringToFront;
            if (isMoved) keeper_.noteMovedByUser(window.id);
            placeByCommand(window, *step.target,
                           takesFocus && &step == lastPlacement(plan) ? BringToFront::yes : BringToFront::no);
            if (isMoved) arrangement_.learnPlacementByUser(window, *step.target);
            break;
        }
        case WindowStep::Kind::wait: // the placement of the other window displaces this one
            break;
        case WindowStep::Kind::focus:
            hasFocused = presenter_.focus(window);
            break;
        case WindowStep::Kind::floating:
            floatByCommand(window);
            break;
        }
    }
    if (!plan.steps.empty() && !plan.action.empty()) keeper_.commit({.before = before});
    return hasFocused ? Outcome::done() : access_.refuseSilently("The window could not be focused");
}

const WindowStep* WindowCommands::lastPlacement(const WindowPlan& plan) {
    const WindowStep* last = nullptr;
    for (const auto& step : plan.steps) {
        if (step.kind == WindowStep::Kind::place) last = &step;
    }
    return last;
}

void WindowCommands::placeByCommand(const ManagedWindow& window, const TileTarget& target, BringToFront bringToFront) {
    const auto covering = geometry_.coveringFor(window, target);
    if (!covering) return;
    presenter_.restore(window);
    keeper_.place(window, *covering, bringToFront);
}

void WindowCommands::floatByCommand(const ManagedWindow& window) {
    keeper_.noteMovedByUser(window.id);
    assignments_.remove(window.id);
    floating_.add(window.id);
    presenter_.restore(window); // if the window was stacked, it is hidden
}

std::optional<WindowID> WindowCommands::windowLastFocusedOn(const DisplayID& wantedDisplayID) const {
    const auto planned = planCommand(command::FocusDisplay{wantedDisplayID});
    const auto* plan = std::get_if<WindowPlan>(&planned);
    return plan ? std::optional(plan->steps.front().windowID) : std::nullopt;
}

} // namespace kova
