#include "workspace/WindowFinder.h"

#include "workspace/NeighborTarget.h"
#include "workspace/WindowCommand.h"
#include "workspace/WindowMatching.h"
#include "workspace/WindowNames.h"
#include "workspace/WorkspaceParts.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <set>

namespace kova {

WindowFinder::WindowFinder(WorkspaceParts& parts, TileGeometry& geometry) :
    services_(parts.services), windowService_(*parts.windowService), state_(parts.state),
    liveWindows_(parts.liveWindows), assignments_(parts.assignments), geometry_(geometry) {}

const ManagedWindow* WindowFinder::windowOfDialog(const ManagedWindow& dialog) const {
    return dialog.parentID ? liveWindows_.find(*dialog.parentID) : nullptr;
}

std::optional<DisplayID> WindowFinder::currentDisplayID() const {
    if (const auto focused = focusedWindowID()) {
        const ManagedWindow* window = liveWindows_.find(*focused);
        const Screen* screen = window ? geometry_.screenOfWindow(*window) : nullptr;
        if (screen) return displayID(*screen);
    }
    if (const auto pointer = services_.screens.pointerLocation()) {
        for (const auto& screen : *state_.screens) {
            if (containsPoint(screen.frame, *pointer)) return displayID(screen);
        }
    }
    if (state_.screens->empty()) return std::nullopt;
    return displayID(state_.screens->front());
}

std::optional<WindowID> WindowFinder::focusedWindowID() const {
    const auto focused = windowService_.focusedWindowID();
    return focused ? std::optional(liveWindows_.dialogs().ownerOf(*focused)) : std::nullopt;
}

const ManagedWindow* WindowFinder::focusedWindow() const {
    const auto focused = focusedWindowID();
    return focused ? liveWindows_.find(*focused) : nullptr;
}

const ManagedWindow* WindowFinder::windowOrFocused(const std::optional<WindowID>& windowID) const {
    return windowID ? liveWindows_.find(*windowID) : focusedWindow();
}

std::optional<StartingPoint> WindowFinder::startingPoint(const std::optional<WindowID>& windowID) const {
    const ManagedWindow* window = windowOrFocused(windowID);
    if (!window) return std::nullopt;
    const auto target = assignments_.targetOf(window->id);
    const Screen* screen = target ? geometry_.screenOfTarget(*target) : nullptr;
    if (!screen) return std::nullopt;
    return StartingPoint{*window, *target, displayID(*screen)};
}

std::optional<std::string> WindowFinder::whyNoStartingPoint(const std::optional<WindowID>& windowID) const {
    if (startingPoint(windowID)) return std::nullopt;
    const ManagedWindow* window = windowOrFocused(windowID);
    if (!window) return windowID ? "There is no such window" : "No managed window has the focus";
    return notInFrontMessage(*window, assignments_.stackTargetOf(window->id).has_value());
}

std::optional<TileTarget> WindowFinder::neighborOf(const StartingPoint& start, WorkspaceDirection direction,
                                                   TilesConsidered considered) const {
    if (!start.window.frame) return std::nullopt;
    std::map<TileTarget, CGRect> frames;
    for (const auto& tile : geometry_.tiles()) {
        if (tile.displayID != start.displayID || tile.windowID == start.window.id) continue;
        const ManagedWindow* front = tile.windowID ? liveWindows_.find(*tile.windowID) : nullptr;
        if (considered == TilesConsidered::occupied && (!front || front->isElsewhere)) continue;
        frames[tile.target] = tile.frameOnScreen;
    }
    return neighborTarget(flipped(*start.window.frame, geometry_.firstScreenMaxY()), direction, frames);
}

std::optional<CycledStack> WindowFinder::cycledStack(const action::CycleStack& cycle) const {
    auto front = cycle.windowID;
    auto target = cycle.target;
    if (!target && front && !assignments_.targetOf(*front)) target = assignments_.stackTargetOf(*front);
    if (target) {
        const auto found = assignments_.assignedWindowIDs.find(*target);
        if (found == assignments_.assignedWindowIDs.end()) return std::nullopt;
        front = found->second;
    }
    const auto start = startingPoint(front);
    if (!start) return std::nullopt;
    const auto stack = assignments_.stackWindowIDsByTarget.find(start->target);
    if (stack == assignments_.stackWindowIDsByTarget.end() || stack->second.size() < 2) return std::nullopt;
    CycledStack cycled{start->target, stack->second};
    auto& order = cycled.order;
    const auto at = std::find(order.begin(), order.end(), start->window.id);
    if (at == order.end()) return std::nullopt;
    const auto step = cycle.step == StackStep::next ? 1 : static_cast<std::ptrdiff_t>(order.size()) - 1;
    auto first = at - order.begin();
    const auto isSkipped = [&] { // a window that cannot be shown in the tile now
        const ManagedWindow* window = liveWindows_.find(order[static_cast<std::size_t>(first)]);
        return window && whyNotMovable(*window);
    };
    do {
        first = (first + step) % static_cast<std::ptrdiff_t>(order.size());
        if (order.begin() + first == at) return std::nullopt;
    } while (isSkipped());
    std::rotate(order.begin(), order.begin() + first, order.end());
    return cycled;
}

std::optional<WindowID> WindowFinder::nextInStack(const action::CycleStack& cycle) const {
    const auto cycled = cycledStack(cycle);
    return cycled ? std::optional(cycled->order.front()) : std::nullopt;
}

std::string WindowFinder::whyNothingNext(const action::CycleStack& cycle) const {
    if (cycle.target) return "No other window waits in that tile";
    return whyNoStartingPoint(cycle.windowID).value_or("No other window waits behind it in its tile");
}

std::optional<ManagedWindow> WindowFinder::findWindow(const WorkspaceWindowReference& reference,
                                                      const std::set<WindowID>& excluded) const {
    const ManagedWindow* window = WindowMatcher(liveWindows_.all(), excluded).take(reference);
    if (!window) return std::nullopt;
    return *window;
}

std::vector<ManagedWindow> WindowFinder::windowsNotElsewhere() const {
    std::vector<ManagedWindow> windows = liveWindows_.all();
    std::erase_if(windows, [](const ManagedWindow& window) { return window.isElsewhere; });
    return windows;
}

std::optional<StartingPoint> WindowFinder::zoomStartingPoint(const std::optional<WindowID>& windowID) const {
    if (const auto start = startingPoint(windowID)) return start;
    const ManagedWindow* window = windowOrFocused(windowID);
    const Screen* screen = window && window->frame ? geometry_.screenOfWindow(*window) : nullptr;
    if (!screen) return std::nullopt;
    const DisplayID display = displayID(*screen);
    const CGPoint middle = center(flipped(*window->frame, geometry_.firstScreenMaxY()));
    std::optional<TileTarget> nearest;
    double best = std::numeric_limits<double>::infinity();
    for (const auto& tile : geometry_.tiles()) {
        if (tile.displayID != display) continue;
        const CGPoint to = center(tile.frameOnScreen);
        const double distance =
            containsPoint(tile.frameOnScreen, middle) ? -1 : std::hypot(to.x - middle.x, to.y - middle.y);
        if (distance < best) {
            best = distance;
            nearest = tile.target;
        }
    }
    if (!nearest) return std::nullopt;
    return StartingPoint{*window, *nearest, display};
}

std::optional<DisplayID> WindowFinder::displayIDOfWindow(const WindowID& windowID) const {
    const ManagedWindow* window = liveWindows_.find(windowID);
    const Screen* screen = window ? geometry_.screenOfWindow(*window) : nullptr;
    return screen ? std::optional(displayID(*screen)) : std::nullopt;
}

std::optional<WindowID> WindowFinder::managedWindowUnder(CGPoint pointOnScreen) const {
    const auto found = windowService_.windowElement(pointOnScreen);
    if (!found) return std::nullopt;
    const auto window = std::find_if(liveWindows_.begin(), liveWindows_.end(),
                                     [&](const ManagedWindow& live) { return live.element == found->second; });
    if (window == liveWindows_.end()) return std::nullopt;
    return window->id;
}

std::optional<CGRect> WindowFinder::currentFrame(const WindowID& windowID) const {
    const ManagedWindow* window = liveWindows_.find(windowID);
    return window ? windowService_.readFrame(window->element) : std::nullopt;
}

} // namespace kova
