// Walking between tiles with the keyboard.
#include "workspace/WorkspaceController.h"

#include "workspace/NeighbourTarget.h"

#include <algorithm>

namespace kova {

const ManagedWindow* WorkspaceController::focusedWindow() const {
    const auto focused = windowService_->focusedWindowID();
    return focused ? findLive(*focused) : nullptr;
}

/// The focused window of the front application, if it is managed and in a tile.
std::optional<WorkspaceController::StartingPoint> WorkspaceController::startingPoint() const {
    const ManagedWindow* window = focusedWindow();
    if (!window) return std::nullopt;
    const auto target = assignments_.targetOf(window->id);
    const Screen* screen = target ? screenOfTarget(*target) : nullptr;
    if (!screen) return std::nullopt;
    return StartingPoint{*window, *target, displayID(*screen)};
}

std::optional<std::string> WorkspaceController::neighbourOf(const StartingPoint& start, WorkspaceDirection direction,
                                                            TilesConsidered considered) const {
    std::map<std::string, CGRect> frames;
    if (start.window.frame) frames[kDirectionalSourceKey] = flipped(*start.window.frame, firstScreenMaxY());
    for (const auto& tile : tiles()) {
        if (tile.displayID != start.displayID || tile.windowID == start.window.id) continue;
        if (considered == TilesConsidered::occupied && !tile.windowID) continue;
        frames[tile.targetID] = tile.frameOnScreen;
    }
    return neighbourTarget(kDirectionalSourceKey, direction, frames);
}

bool WorkspaceController::focusWindow(WorkspaceDirection direction) {
    closeFocusMode();
    if (!requireWindowAccess()) return false;
    const auto start = startingPoint();
    if (!start) return false;
    const auto target = neighbourOf(*start, direction, TilesConsidered::occupied);
    const auto front = target ? assignments_.assignedWindowIDs.find(*target) : assignments_.assignedWindowIDs.end();
    const ManagedWindow* window = front == assignments_.assignedWindowIDs.end() ? nullptr : findLive(front->second);
    if (!window) return refuse("No occupied zone " + std::string(describe(direction)) + " of the focused window");
    const std::string name = window->applicationName;
    const std::string windowID = window->id;
    const bool focused = windowService_->restoreAndFocus(*window);
    if (focused) noteBroughtBack(windowID);
    services_.accessibility.flush();
    if (!focused) return false;
    showStatusMessage("Focused " + name);
    return true;
}

bool WorkspaceController::moveWindow(WorkspaceDirection direction) {
    closeFocusMode();
    if (!requireWindowAccess()) return false;
    const auto start = startingPoint();
    if (!start) return false;
    const std::string word(describe(direction));
    const auto target = neighbourOf(*start, direction, TilesConsidered::all);
    if (!target) return refuse("No zone " + word + " of the focused window");
    pushUndoSnapshot({"move " + word, {start->window.applicationName}});
    noteMovedByUser(start->window.id);
    placeWindow(start->window.id, *target, Focusing::yes);
    learn(start->window, *target);
    showStatusMessage("Moved " + start->window.applicationName + " to the " + word + " zone");
    return true;
}

/// Un-hiding an application brings all its windows: those that wait in a stack go on waiting, minimised.
void WorkspaceController::bringBack(const ManagedWindow& window) {
    const bool wasHidden = windowService_->isApplicationHidden(window.processIdentifier);
    windowService_->unhideApplication(window.processIdentifier);
    windowService_->unminimize(window);
    noteBroughtBack(window.id);
    if (!wasHidden) return;
    for (auto& other : liveWindows_) {
        const bool isSibling = other.processIdentifier == window.processIdentifier && other.id != window.id;
        if (isSibling && !assignments_.isAssigned(other.id) && assignments_.stackTargetOf(other.id))
            minimizeWindow(other);
    }
}

/// What was asked to come back counts as being there: the next poll may be half a second away.
void WorkspaceController::noteBroughtBack(const std::string& windowID) {
    ManagedWindow* window = findLive(windowID);
    if (!window) return;
    window->isMinimized = false;
    window->isVisible = true;
}

bool WorkspaceController::cycleStack() {
    closeFocusMode();
    if (!requireWindowAccess()) return false;
    const auto start = startingPoint();
    if (!start) return false;
    const auto front = assignments_.assignedWindowIDs.find(start->targetID);
    const auto stack = assignments_.stackWindowIDsByTarget.find(start->targetID);
    if (front == assignments_.assignedWindowIDs.end() || stack == assignments_.stackWindowIDsByTarget.end())
        return false;
    std::vector<std::string> order = stack->second;
    if (order.size() < 2) return false;
    const auto at = std::find(order.begin(), order.end(), front->second);
    if (at == order.end()) return false;
    std::rotate(order.begin(), at + 1 == order.end() ? order.begin() : at + 1, order.end());
    const ManagedWindow* next = findLive(order.front());
    if (!next) return false;
    const ManagedWindow window = *next;
    pushUndoSnapshot({"cycle stack", {window.applicationName}});
    bringBack(window);
    placeWindow(window.id, start->targetID, Focusing::yes);
    // Whoever gave way to a window that spans several tiles waits behind those that waited here before.
    for (const auto& member : assignments_.stackWindowIDsByTarget[start->targetID]) {
        if (std::find(order.begin(), order.end(), member) == order.end()) order.push_back(member);
    }
    assignments_.stackWindowIDsByTarget[start->targetID] = std::move(order);
    publishAssignments();
    showStatusMessage(window.applicationName + " is now active");
    return true;
}

} // namespace kova
