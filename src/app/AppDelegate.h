// The agent's heart: owns the workspace for the life of the process, starts it and stops it. Main thread only.
#pragma once

#include "app/LayoutDividerWindowController.h"
#include "app/WindowDragCoordinator.h"
#include "workspace/WorkspaceController.h"

#include <optional>

namespace kova {

/// What the desktop has for the user's hand; null where it has nothing.
struct HandServices {
    PointerMonitorServicing* pointer = nullptr;
    DividerHandleServicing* dividerHandles = nullptr;
};

class AppDelegate {
  public:
    /// The services outlive the delegate.
    explicit AppDelegate(const WorkspaceServices& services, const HandServices& hand = {});
    /// Stops the workspace if nobody did.
    ~AppDelegate();
    AppDelegate(const AppDelegate&) = delete;
    AppDelegate& operator=(const AppDelegate&) = delete;

    WorkspaceController& workspace() { return workspace_; }

    /// Begins to manage windows, without asking the user for the permission. Does nothing when it is started already.
    void startWorkspace();
    /// Ends it: the desktop gets back what was borrowed, and the preferences are on disk. Does nothing unless started.
    void stopWorkspace();
    bool isWorkspaceStarted() const { return workspaceIsStarted_; }

  private:
    PreferencesStore& preferences_;
    MainQueue& queue_;
    HandServices hand_;
    WorkspaceController workspace_;
    // While the workspace is started.
    std::optional<LayoutDividerWindowController> dividerWindows_;
    std::optional<WindowDragCoordinator> windowDrags_;
    bool workspaceIsStarted_ = false;
};

} // namespace kova
