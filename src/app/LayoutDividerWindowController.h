// Keeps a handle on every divider of every display, turns pointer events on handles into divider drags, and shows the
// dividers in the overlay. On desktops where a press on the wallpaper moves windows aside, also guards the wallpaper
// between windows. Main thread only.
#pragma once

#include "app/OverlayBoard.h"
#include "support/Lifetime.h"
#include "support/MainQueue.h"
#include "windowing/PointerServicing.h"
#include "workspace/WorkspaceController.h"

#include <optional>
#include <string>
#include <vector>

namespace kova {

class LayoutDividerWindowController {
  public:
    /// All arguments outlive the controller.
    LayoutDividerWindowController(WorkspaceController& workspace, DividerHandleServicing& handles, OverlayBoard& board,
                                  MainQueue& queue);
    ~LayoutDividerWindowController();
    LayoutDividerWindowController(const LayoutDividerWindowController&) = delete;
    LayoutDividerWindowController& operator=(const LayoutDividerWindowController&) = delete;

    /// Makes the handles match the current dividers; no-op if no divider has changed.
    void refresh();
    /// Removes all handles until the next refresh.
    void close();

  private:
    struct Shown {
        DividerHandle handle;
        DisplayLayoutDivider divider;
    };
    /// The divider whose handle is pressed.
    struct Held {
        DisplayLayoutDivider divider;
        CGPoint start{}; // of the pointer, screen space
    };
    void refreshSoon();
    void showHandles();
    using Guards = std::vector<CGRect>; // screen space
    void guardDesktop(Guards guards);
    void handle(const DividerHandleEvent& event);
    void hover(const std::optional<std::string>& handleID);
    void forgetPointer();
    std::vector<OverlayDivider> contents() const;
    std::optional<DisplayLayoutDivider> dividerOf(const std::string& handleID) const;
    double translation(const Held& held, CGPoint location) const;

    WorkspaceController& workspace_;
    DividerHandleServicing& handles_;
    OverlayBoard& board_;
    MainQueue& queue_;
    std::vector<Shown> shown_;
    Guards guards_;
    std::optional<Held> held_;
    std::optional<std::string> hoveredID_; // the handle under the pointer
    bool isClosed_ = true;
    bool isRefreshDue_ = false;
    std::vector<Subscription> subscriptions_;
    Lifetime lifetime_;
};

} // namespace kova
