// Recognizes that the user moves or resizes a window with the pointer, and tells the workspace over which tile the
// window is and where it was released. What happens then the workspace decides. The overlay shows the drag while a
// window is moved. Main thread only.
#pragma once

#include "app/OverlayBoard.h"
#include "support/Lifetime.h"
#include "support/MainQueue.h"
#include "windowing/PointerServicing.h"
#include "workspace/WorkspaceController.h"

#include <optional>
#include <string>

namespace kova {

class WindowDragCoordinator {
  public:
    /// The window may reach its last place a little after the button is up.
    static constexpr Seconds kSettlingTime{0.05};
    /// Where windows are dragged by their titles and edges, a press elsewhere asks nothing; a drag this long may be of
    /// a window that follows its content, and asks once.
    static constexpr double kContentDragPoints = 24;

    /// All of it outlives the coordinator.
    WindowDragCoordinator(WorkspaceController& workspace, PointerMonitorServicing& pointer, OverlayBoard& board,
                          MainQueue& queue);
    ~WindowDragCoordinator();
    WindowDragCoordinator(const WindowDragCoordinator&) = delete;
    WindowDragCoordinator& operator=(const WindowDragCoordinator&) = delete;

    void installMonitor();
    /// What the hand holds is left where it is, and to the polls.
    void removeMonitor();

  private:
    /// The button is down on a managed window, which may or may not follow.
    struct Grip {
        std::string windowID;
        CGRect frame{};    // window-service space, when the button went down
        CGPoint pointer{}; // screen space, at the same moment
        bool isDragging = false;
        std::optional<WorkspaceController::WindowDragKind> movement{}; // while dragging
    };
    void handle(const PointerEvent& event);
    void pressed(CGPoint location);
    void moved(CGPoint location);
    void released(CGPoint location, bool isShiftDown);
    bool isNearKnownTitleOrEdge(CGPoint location) const;
    void takeHold(CGPoint location);
    void takeHoldByContent(CGPoint location);
    void letGoUnmoved();
    void finishLettingGo();
    bool isAtRest(CGPoint location) const;
    std::optional<OverlayDrag> dragAt(CGPoint location) const;
    void showDrag(std::optional<OverlayDrag> drag);
    std::optional<std::string> displayUnder(CGPoint location) const;
    /// What the hand has done to the window so far; absent when nothing.
    std::optional<WorkspaceController::WindowDragKind> movement() const;

    WorkspaceController& workspace_;
    PointerMonitorServicing& pointer_;
    OverlayBoard& board_;
    MainQueue& queue_;
    Subscription subscription_;
    /// The button is up, and the window on its way to its last place.
    struct LetGo {
        CGPoint location{};
        WorkspaceController::LettingGo lettingGo = WorkspaceController::LettingGo::intoTile;
    };
    std::optional<CGPoint> contentPress_; // screen space; until the pointer has gone far enough to ask
    std::optional<Grip> grip_;
    std::optional<LetGo> letGo_;
    std::optional<OverlayDrag> shownDrag_; // until the button is up
    Lifetime lifetime_;
};

} // namespace kova
