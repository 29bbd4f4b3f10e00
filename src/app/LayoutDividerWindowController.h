// Keeps a handle on every divider of every display, and turns what the hand does with them into divider drags.
#pragma once

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
    LayoutDividerWindowController(WorkspaceController& workspace, DividerHandleServicing& handles, MainQueue& queue);
    ~LayoutDividerWindowController();
    LayoutDividerWindowController(const LayoutDividerWindowController&) = delete;
    LayoutDividerWindowController& operator=(const LayoutDividerWindowController&) = delete;

    /// Shows the handles where the dividers are now; harmless when nothing has changed.
    void refresh();
    /// Takes them all away, until the next refresh.
    void close();

  private:
    struct Shown {
        DividerHandle handle;
        DisplayLayoutDivider divider;
    };
    struct Held {
        DisplayLayoutDivider divider;
        CGPoint start{};
    };
    void refreshSoon();
    void handle(const DividerHandleEvent& event);
    std::optional<DisplayLayoutDivider> dividerOf(const std::string& handleID) const;
    double translation(const Held& held, CGPoint location) const;

    WorkspaceController& workspace_;
    DividerHandleServicing& handles_;
    MainQueue& queue_;
    std::vector<Shown> shown_;
    std::optional<Held> held_;
    bool isClosed_ = false;
    bool isRefreshDue_ = false;
    std::vector<Subscription> subscriptions_;
    Lifetime lifetime_;
};

} // namespace kova
