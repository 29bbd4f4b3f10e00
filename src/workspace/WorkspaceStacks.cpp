// Windows that wait in the stack of a tile, and what brings them forward.
#include "workspace/WorkspaceController.h"

#include <algorithm>

namespace kova {

/// Fills the tiles that have lost their front window since `before`. Not while a window is zoomed: the workspace behind
/// it is restored when focus mode ends, and the next poll then finds the tile without its window.
void WorkspaceController::bringNextForward(const TileAssignments& before) {
    if (!*state_.bringsNextForward || focusMode_.isOn() || !mayMoveWindows()) return;
    for (const auto& candidates : tileMemory_.succession().candidates(before, assignments_)) {
        const bool isDone = std::any_of(candidates.begin(), candidates.end(),
                                        [this](const Promotion& promotion) { return bringForward(promotion); });
        if (isDone) publishAssignments();
    }
}

/// Neither shown nor able to be brought back by a request.
bool WorkspaceController::isOffScreen(const ManagedWindow& window) const {
    const bool isShownSomehow = window.isVisible || window.isMinimized || !window.frame ||
                                windowService_->isApplicationHidden(window.processIdentifier);
    // What KOVA has put away and is hidden no more was brought back by hand since the last poll.
    const bool wasPutAway = assignments_.stackTargetOf(window.id) && !assignments_.isAssigned(window.id);
    return window.isElsewhere || (!isShownSomehow && !wasPutAway);
}

/// False when the window cannot be shown, or needs tiles that others have.
bool WorkspaceController::bringForward(const Promotion& promotion) {
    const ManagedWindow* live = findLive(promotion.windowID);
    if (!live || live->isFullScreen || isOffScreen(*live)) return false;
    const ManagedWindow window = *live;
    const auto covering = coveringFor(window, promotion.targetID);
    const bool isFree =
        covering && std::none_of(covering->targets.begin(), covering->targets.end(),
                                 [&](const auto& t) { return assignments_.assignedWindowIDs.contains(t.id()); });
    if (!isFree) return false;
    bringBack(window);
    place(window, *covering, AccessibilityWindowService::BringToFront::no);
    return true;
}

} // namespace kova
