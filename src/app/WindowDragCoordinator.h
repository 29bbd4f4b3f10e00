// Recognizes that the user moves or resizes a window with the pointer. Reports the pointer's position and the release
// to the workspace, which decides what happens. The overlay shows the drag of a window that is moved, not resized. Main
// thread only.
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
    /// The time after a release within which the window gets its final frame.
    static constexpr Seconds kSettlingTime{0.05};
    /// On some desktops windows are usually dragged by titles and edges. There, a press elsewhere in a window sends no
    /// request to the window's application at first. Once the pointer has moved this far, the request is sent, because
    /// the user may be dragging the window by its content.
    static constexpr double kContentDragPoints = 24;

    /// All arguments outlive the coordinator.
    WindowDragCoordinator(WorkspaceController& workspace, PointerMonitorServicing& pointer, OverlayBoard& board,
                          MainQueue& queue);
    ~WindowDragCoordinator();
    WindowDragCoordinator(const WindowDragCoordinator&) = delete;
    WindowDragCoordinator& operator=(const WindowDragCoordinator&) = delete;

    void installMonitor();
    /// Ends a drag; polls may move the window again.
    void removeMonitor();

  private:
    /// The button is down on a managed window, which may or may not be dragged.
    struct Press {
        WindowID windowID;
        CGRect frame{};    // window-service space, when the button went down
        CGPoint pointer{}; // screen space, at the same moment
        bool isDragging = false;
        std::optional<action::WindowDragKind> movement{}; // while dragging
        action::DropMode mode = action::DropMode::intoTile;
    };
    void handle(const PointerEvent& event);
    void pressed(CGPoint location);
    /// `mode` says what a release of the button would do.
    void moved(CGPoint location, action::DropMode mode);
    void released(CGPoint location, action::DropMode mode);
    bool isNearKnownTitleOrEdge(CGPoint location) const;
    void beginPress(CGPoint location);
    void beginPressByContent(CGPoint location);
    void endUnmovedPress();
    void finishRelease();
    bool isUnmoved(CGPoint location) const;
    std::optional<OverlayDrag> dragAt(CGPoint location) const;
    void showDrag(std::optional<OverlayDrag> drag);
    std::optional<DisplayID> displayUnder(CGPoint location) const;
    /// How the window's frame has changed since the press; absent if it has not.
    std::optional<action::WindowDragKind> movement() const;

    WorkspaceController& workspace_;
    PointerMonitorServicing& pointer_;
    OverlayBoard& board_;
    MainQueue& queue_;
    Subscription subscription_;
    /// The button is up, and the window may still be moving to its final frame.
    struct Release {
        CGPoint location{};
        action::DropMode mode = action::DropMode::intoTile;
    };
    /// Where a press by content began, in screen space; absent once the pointer has moved by `kContentDragPoints`.
    std::optional<CGPoint> contentPress_;
    std::optional<Press> press_;
    std::optional<Release> release_;
    std::optional<OverlayDrag> shownDrag_; // until the button is up
    Lifetime lifetime_;
};

} // namespace kova
