#include "workspace/WindowPresenter.h"

#include "workspace/StackingOrder.h"
#include "workspace/VisibleArea.h"
#include "workspace/WorkspaceParts.h"

#include <set>

namespace kova {

using BringToFront = AccessibilityWindowService::BringToFront;

namespace {

std::set<pid_t> processesInFront(const TileAssignments& assignments, const std::vector<ManagedWindow>& windows) {
    std::set<WindowID> fronts;
    for (const auto& [target, windowID] : assignments.assignedWindowIDs) fronts.insert(windowID);
    std::set<pid_t> processes;
    for (const auto& window : windows) {
        if (fronts.contains(window.id)) processes.insert(window.processIdentifier);
    }
    return processes;
}

} // namespace

WindowPresenter::WindowPresenter(
    WorkspaceParts& parts, RefreshCycle& refreshCycle, TileGeometry& geometry, const WindowFinder& finder,
    std::function<void(const WindowID&, const CGRect&, const CGRect&)> minimumSizeObserved) :
    services_(parts.services),
    windowService_(*parts.windowService), state_(parts.state), liveWindows_(parts.liveWindows),
    assignments_(parts.assignments), tileMemory_(parts.tileMemory), focusMode_(parts.focusMode),
    floating_(parts.floating), pointer_(parts.pointer), frames_(parts.frames), refreshCycle_(refreshCycle),
    geometry_(geometry), finder_(finder), minimumSizeObserved_(std::move(minimumSizeObserved)) {}

bool WindowPresenter::focus(const ManagedWindow& window) {
    const WindowID id = window.id;
    const bool isFocused = windowService_.restoreAndFocus(window);
    if (isFocused) requestPresentation(id, WindowPresentation::shown);
    return isFocused;
}

/// If the application was hidden, showing it shows all its windows. So its other stacked windows are minimized then.
void WindowPresenter::restore(const ManagedWindow& window) {
    const bool wasHidden = windowService_.isApplicationHidden(window.processIdentifier);
    unhideApplicationOf(window);
    windowService_.unminimize(window);
    requestPresentation(window.id, WindowPresentation::shown);
    if (!wasHidden) return;
    for (const auto& other : liveWindows_) {
        const bool isOfSameApplication = other.processIdentifier == window.processIdentifier && other.id != window.id;
        if (isOfSameApplication && !assignments_.isAssigned(other.id) && assignments_.stackTargetOf(other.id))
            minimizeWindow(other);
    }
}

/// An application is hidden only if none of its windows is the front window of a tile, is elsewhere, or floats by
/// command, because such a window would be hidden as well.
void WindowPresenter::hideDisplaced(const std::vector<WindowID>& displacedWindowIDs) {
    if (displacedWindowIDs.empty()) return;
    auto processesKeptVisible = processesInFront(assignments_, liveWindows_.all());
    for (const auto& window : liveWindows_) {
        const bool isShownFloating = window.isVisible && floating_.contains(window.id);
        if (window.isElsewhere || isShownFloating) processesKeptVisible.insert(window.processIdentifier);
    }
    std::set<pid_t> hiddenProcesses; // an application is hidden once, with all its windows
    std::vector<std::pair<const ManagedWindow*, DisplacedWindowPresentationAction>> decisions;
    for (const auto& id : displacedWindowIDs) {
        const ManagedWindow* window = liveWindows_.find(id);
        if (!window || window->isFullScreen || window->isElsewhere || window->isMinimized) continue;
        const bool isKeptVisible = processesKeptVisible.contains(window->processIdentifier);
        const bool isHiddenAlready = !isKeptVisible && (!hiddenProcesses.insert(window->processIdentifier).second ||
                                                        windowService_.isApplicationHidden(window->processIdentifier));
        if (isHiddenAlready) continue;
        decisions.emplace_back(window, isKeptVisible ? DisplacedWindowPresentationAction::minimizeWindow
                                                     : DisplacedWindowPresentationAction::hideApplication);
    }
    for (const auto& [window, action] : decisions) {
        if (action == DisplacedWindowPresentationAction::minimizeWindow) {
            minimizeWindow(*window);
            continue;
        }
        hideApplicationOf(*window);
    }
}

void WindowPresenter::hideApplicationOf(const ManagedWindow& window) {
    windowService_.presentDisplaced(window, DisplacedWindowPresentationAction::hideApplication);
    liveWindows_.requestHidden(window.processIdentifier, services_.queue.uptime());
    refreshCycle_.wake(); // polls continue until they confirm the new state
}

void WindowPresenter::unhideApplicationOf(const ManagedWindow& window) {
    const bool wasHidden = windowService_.isApplicationHidden(window.processIdentifier);
    windowService_.unhideApplication(window.processIdentifier);
    if (!wasHidden) return;
    liveWindows_.requestShown(window.processIdentifier, services_.queue.uptime());
    refreshCycle_.wake(); // polls continue until they confirm the new state
}

void WindowPresenter::minimizeWindow(const ManagedWindow& window) {
    const bool wasMinimizedByUser = window.isMinimized && !liveWindows_.minimized().contains(window.id);
    if (!wasMinimizedByUser) liveWindows_.noteMinimized(window.id, services_.queue.uptime());
    windowService_.presentDisplaced(window, DisplacedWindowPresentationAction::minimizeWindow);
    requestPresentation(window.id, WindowPresentation::minimized);
}

void WindowPresenter::requestPresentation(const WindowID& windowID, WindowPresentation presentation) {
    if (!liveWindows_.request(windowID, presentation, services_.queue.uptime())) return;
    refreshCycle_.wake(); // polls continue until they confirm the new state
}

/// Updates the list of live windows at once, so that a snapshot taken before the next poll contains the new frame.
void WindowPresenter::writeFrame(const ManagedWindow& window, const CGRect& frame, BringToFront raise) {
    // A remembered frame may be on a display that has been disconnected since then.
    if (window.isFullScreen || !geometry_.isOnSomeScreen(frame)) return;
    if (window.isElsewhere || !window.isResponding) return tileMemory_.setPendingFrame(window.id, frame);
    const WindowID id = window.id;
    windowService_.setFrame(window, frame, raise, lifetime_.guard([this, id, frame](CGRect actual) {
        minimumSizeObserved_(id, frame, actual);
    }));
    frames_.noteRequest(id);
    refreshCycle_.wake(); // polls continue until they confirm the frame
    liveWindows_.noteFrame(id, frame);
    if (const ManagedWindow* live = liveWindows_.find(id)) {
        // A placed window is no longer maximized.
        if (live->isMaximized) liveWindows_.requestMaximized(id, false, services_.queue.uptime());
    }
    moveDialogsAlong(id, frame);
}

void WindowPresenter::moveDialogsAlong(const WindowID& windowID, const CGRect& frame) {
    const Screen* screen = screenNearest(*state_.screens, flipped(frame, geometry_.firstScreenMaxY()));
    if (!screen) return;
    const CGRect visibleArea = flipped(screen->visibleFrame, geometry_.firstScreenMaxY());
    for (const auto& move : liveWindows_.moveDialogs(windowID, frame, visibleArea)) {
        windowService_.move(move.dialog, move.origin);
    }
}

void WindowPresenter::reapplyTileFrames(CorrectedDrift correctedDrift) {
    if (*state_.permissionState != AccessibilityPermissionState::granted) return;
    const auto frames = geometry_.framesOfTiledWindows();
    for (const ManagedWindow& window : liveWindows_) {
        if (pointer_.isPressing(window.id)) continue; // the window stays where it is until the pointer releases it
        const auto target = frames.find(window.id);
        if (target != frames.end() && !isLeftAlone(window)) {
            reapplyWindow(window, target->second, correctedDrift);
            continue;
        }
        frames_.noteNotPlaced(window);
    }
}

/// A window that is left alone keeps its tile and is placed as soon as the reason has ended.
std::optional<LeftAloneReason> WindowPresenter::whyLeftAlone(const ManagedWindow& window) const {
    return kova::whyLeftAlone(window,
                              {.isZoomed = focusMode_.isZoomed(window.id),
                               .isHeldByPointer = pointer_.isHolding(window.id),
                               .isApplicationHidden = windowService_.isApplicationHidden(window.processIdentifier)});
}

/// Requests the frame of the window if it is off its tile. Makes no request while a placement is still being verified,
/// or when the window has refused the frame too often.
void WindowPresenter::reapplyWindow(const ManagedWindow& window, const CGRect& target, CorrectedDrift correctedDrift) {
    const auto decision = frames_.decide(window, target, correctedDrift, windowService_.pendingFrame(window.id));
    if (decision == FrameKeeper::Decision::noRequest) return;
    const bool isAgain = decision == FrameKeeper::Decision::repeatRequest;
    if (isAgain && windowService_.areSizesReliable(window)) frames_.noteAttempt(window.id);
    writeFrame(window, target, BringToFront::no);
}

void WindowPresenter::raiseRestored(const std::vector<WindowID>& windowIDs) {
    std::vector<const ManagedWindow*> fronts;
    for (const auto& id : windowIDs) {
        const ManagedWindow* window = liveWindows_.find(id);
        if (window && !window->isFullScreen) fronts.push_back(window);
    }
    std::vector<WindowID> focusOrder = liveWindows_.focusOrder().windowIDs();
    if (const ManagedWindow* focused = finder_.focusedWindow()) focusOrder.insert(focusOrder.begin(), focused->id);
    const auto inRaisingOrder = windowsToRaise(fronts, services_.accessibility.onScreenWindows(), focusOrder);
    for (const auto* window : inRaisingOrder) windowService_.raise(*window);
}

/// True if the window is elsewhere, or is neither visible nor minimized nor hidden.
bool WindowPresenter::isOffScreen(const ManagedWindow& window) const {
    const bool isVisibleOrHidden = window.isVisible || window.isMinimized || !window.frame ||
                                   windowService_.isApplicationHidden(window.processIdentifier);
    // KOVA has hidden the application of a stacked window. If the application is not hidden now, the user has shown it
    // since the last poll, and the next poll will find the window visible.
    const bool isStacked = assignments_.stackTargetOf(window.id) && !assignments_.isAssigned(window.id);
    return window.isElsewhere || (!isVisibleOrHidden && !isStacked);
}

} // namespace kova
