// Walking between tiles with the keyboard.
#include "workspace/WorkspaceController.h"

#include "workspace/NeighbourTarget.h"

#include <algorithm>

namespace kova {

/// A dialog's is that of its window.
std::optional<std::string> WorkspaceController::focusedWindowID() const {
    const auto focused = windowService_->focusedWindowID();
    return focused ? std::optional(liveWindows_.dialogs().ownerOf(*focused)) : std::nullopt;
}

const ManagedWindow* WorkspaceController::focusedWindow() const {
    const auto focused = focusedWindowID();
    return focused ? findLive(*focused) : nullptr;
}

const ManagedWindow* WorkspaceController::actingWindow(const std::optional<std::string>& windowID) const {
    return windowID ? findLive(*windowID) : focusedWindow();
}

/// The window, else the focused one of the front application, if it is managed and in a tile.
std::optional<WorkspaceController::StartingPoint>
WorkspaceController::startingPoint(const std::optional<std::string>& windowID) const {
    const ManagedWindow* window = actingWindow(windowID);
    if (!window) return std::nullopt;
    const auto target = assignments_.targetOf(window->id);
    const Screen* screen = target ? screenOfTarget(*target) : nullptr;
    if (!screen) return std::nullopt;
    return StartingPoint{*window, *target, displayID(*screen)};
}

std::optional<std::string> WorkspaceController::whyNoStartingPoint(const std::optional<std::string>& windowID) const {
    if (startingPoint(windowID)) return std::nullopt;
    const ManagedWindow* window = actingWindow(windowID);
    if (!window) return windowID ? "There is no such window" : "No managed window has the focus";
    return window->applicationName + " is in no tile. Put it into one with “kova tile” or “kova place”";
}

std::optional<std::string> WorkspaceController::neighbourOf(const StartingPoint& start, WorkspaceDirection direction,
                                                            TilesConsidered considered) const {
    std::map<std::string, CGRect> frames;
    if (start.window.frame) frames[kDirectionalSourceKey] = flipped(*start.window.frame, firstScreenMaxY());
    for (const auto& tile : tiles()) {
        if (tile.displayID != start.displayID || tile.windowID == start.window.id) continue;
        const ManagedWindow* front = tile.windowID ? findLive(*tile.windowID) : nullptr;
        if (considered == TilesConsidered::occupied && (!front || front->isElsewhere)) continue;
        frames[tile.targetID] = tile.frameOnScreen;
    }
    return neighbourTarget(kDirectionalSourceKey, direction, frames);
}

/// Shows the window and gives it the keyboard.
bool WorkspaceController::focus(const ManagedWindow& window) {
    const std::string id = window.id;
    const bool isFocused = windowService_->restoreAndFocus(window);
    if (isFocused) requestPresentation(id, WindowPresentation::shown);
    return isFocused;
}

Outcome WorkspaceController::focusWindow(WorkspaceDirection direction, const std::optional<std::string>& fromWindowID) {
    const auto start = startingPoint(fromWindowID);
    if (!start) return refuse(*whyNoStartingPoint(fromWindowID));
    const auto target = neighbourOf(*start, direction, TilesConsidered::occupied);
    const auto front = target ? assignments_.assignedWindowIDs.find(*target) : assignments_.assignedWindowIDs.end();
    const ManagedWindow* window = front == assignments_.assignedWindowIDs.end() ? nullptr : findLive(front->second);
    if (!window) return refuse("No occupied zone " + std::string(describe(direction)) + " of the focused window");
    const std::string name = window->applicationName;
    return focus(*window) ? done("Focused " + name) : refuseSilently("The window there could not be focused");
}

Outcome WorkspaceController::moveWindow(WorkspaceDirection direction, const std::optional<std::string>& windowID) {
    const auto start = startingPoint(windowID);
    if (!start) return refuse(*whyNoStartingPoint(windowID));
    const std::string word(describe(direction));
    const auto target = neighbourOf(*start, direction, TilesConsidered::all);
    if (!target) return refuse("No zone " + word + " of the focused window");
    pushUndoSnapshot({"move " + word, {start->window.applicationName}});
    noteMovedByUser(start->window.id);
    placeWindow(start->window.id, *target, Focusing::yes);
    learnPlacementByUser(start->window, *target);
    return done("Moved " + start->window.applicationName + " to the " + word + " zone");
}

/// Un-hiding an application brings all its windows: those that wait in a stack go on waiting, minimised.
void WorkspaceController::bringBack(const ManagedWindow& window) {
    const bool wasHidden = windowService_->isApplicationHidden(window.processIdentifier);
    unhideApplicationOf(window);
    windowService_->unminimize(window);
    requestPresentation(window.id, WindowPresentation::shown);
    if (!wasHidden) return;
    for (auto& other : liveWindows_) {
        const bool isSibling = other.processIdentifier == window.processIdentifier && other.id != window.id;
        if (isSibling && !assignments_.isAssigned(other.id) && assignments_.stackTargetOf(other.id))
            minimizeWindow(other);
    }
}

/// The tile whose stack is meant, of a spanning window its anchor, and the stack once it was turned. Absent when no
/// other window waits there.
std::optional<WorkspaceController::StackTurn> WorkspaceController::stackTurn(const action::CycleStack& cycle) const {
    std::optional<std::string> front = cycle.windowID;
    if (cycle.targetID) {
        const auto found = assignments_.assignedWindowIDs.find(*cycle.targetID);
        if (found == assignments_.assignedWindowIDs.end()) return std::nullopt;
        front = found->second;
    }
    const auto start = startingPoint(front);
    if (!start) return std::nullopt;
    const auto stack = assignments_.stackWindowIDsByTarget.find(start->targetID);
    if (stack == assignments_.stackWindowIDsByTarget.end() || stack->second.size() < 2) return std::nullopt;
    StackTurn turn{start->targetID, stack->second};
    const auto at = std::find(turn.order.begin(), turn.order.end(), start->window.id);
    if (at == turn.order.end()) return std::nullopt;
    const auto step = cycle.step == StackStep::next ? 1 : static_cast<std::ptrdiff_t>(turn.order.size()) - 1;
    const auto first = (at - turn.order.begin() + step) % static_cast<std::ptrdiff_t>(turn.order.size());
    std::rotate(turn.order.begin(), turn.order.begin() + first, turn.order.end());
    return turn;
}

std::optional<std::string> WorkspaceController::nextInStack(const action::CycleStack& cycle) const {
    const auto turn = stackTurn(cycle);
    return turn ? std::optional(turn->order.front()) : std::nullopt;
}

std::string WorkspaceController::whyNothingNext(const action::CycleStack& cycle) const {
    if (cycle.targetID) return "No other window waits in that tile";
    return whyNoStartingPoint(cycle.windowID).value_or("No other window waits behind it in its tile");
}

Outcome WorkspaceController::cycleStack(const action::CycleStack& cycle) {
    auto turn = stackTurn(cycle);
    if (!turn) return refuse(whyNothingNext(cycle));
    const auto& target = turn->targetID;
    auto& order = turn->order;
    const ManagedWindow* next = findLive(order.front());
    if (!next) return refuseSilently(whyNothingNext(cycle));
    const ManagedWindow window = *next;
    pushUndoSnapshot({std::string(action::CycleStack::kTraits.undoLabel), {window.applicationName}});
    bringBack(window);
    placeWindow(window.id, target, Focusing::yes);
    // One of them may have come forward in a tile that the span gave up.
    std::erase_if(order, [&](const std::string& id) { return assignments_.stackTargetOf(id) != target; });
    // A window that gave way to one that spans several tiles waits behind those that waited here before.
    for (const auto& member : assignments_.stackWindowIDsByTarget[target]) {
        if (std::find(order.begin(), order.end(), member) == order.end()) order.push_back(member);
    }
    assignments_.stackWindowIDsByTarget[target] = std::move(order);
    publishAssignments();
    return done(window.applicationName + " is now active");
}

} // namespace kova
