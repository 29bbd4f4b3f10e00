// Owns the workspace for the lifetime of the process, starts and stops it, and suspends it while the user cannot see
// the screen. Main thread only.
#pragma once

#include "app/BackdropWindowController.h"
#include "app/DockAutoHideController.h"
#include "app/KovaOnboardingState.h"
#include "app/KovaOnboardingWindowController.h"
#include "app/KovaSettingsWindowController.h"
#include "app/LaunchAtLoginController.h"
#include "app/LayoutDividerWindowController.h"
#include "app/OnboardingServicing.h"
#include "app/OverlayBoard.h"
#include "app/PermissionRequest.h"
#include "app/SystemActivityState.h"
#include "app/TileFooterWindowController.h"
#include "app/UserInterfaceController.h"
#include "app/WindowDragCoordinator.h"
#include "commands/LayoutShortcutCoordinator.h"
#include "commands/URLHandler.h"
#include "workspace/WorkspaceController.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace kova {

/// Services of the desktop other than windows; null if the desktop lacks the service. All outlive the delegate.
struct ShellServices {
    PointerMonitorServicing* pointer = nullptr;
    DividerHandleServicing* dividerHandles = nullptr;
    std::vector<SystemActivityServicing*> systemActivity{}; // each reports some of the events
    KeyMonitorServicing* keys = nullptr;
    LaunchAtLoginServicing* launchAtLogin = nullptr;
    DockAutoHideServicing* dockAutoHide = nullptr;
    OnboardingServicing* onboarding = nullptr;
    UserInterfaceServicing* userInterface = nullptr;
};

class AppDelegate {
  public:
    /// The services outlive the delegate.
    explicit AppDelegate(const WorkspaceServices& services, const ShellServices& shell = {});
    /// Stops the workspace if it is still started.
    ~AppDelegate();
    AppDelegate(const AppDelegate&) = delete;
    AppDelegate& operator=(const AppDelegate&) = delete;

    WorkspaceController& workspace() { return workspace_; }
    URLHandler& urls() { return urls_; }
    /// Opens URLs that the desktop passes to the program.
    void openURLs(const std::vector<std::string>& urls);
    KovaShortcutSettings& shortcutSettings() { return shortcutSettings_; }
    KovaOnboardingState& onboarding() { return onboarding_; }
    /// The contents of the overlay; empty unless the workspace is started.
    OverlayServing& overlay() { return overlay_; }
    /// Null where the desktop has no such service.
    LaunchAtLoginController* launchAtLogin() { return launchAtLogin_ ? &*launchAtLogin_ : nullptr; }
    UserInterfaceController* userInterface() { return userInterface_ ? &*userInterface_ : nullptr; }
    /// Sets the action of the palette's shortcut; until then the shortcut has no effect.
    void onOpenPalette(std::function<void()> open) { openPalette_ = std::move(open); }
    /// Null before `applicationDidFinishLaunching`.
    KovaSettingsWindowController* settingsWindow() { return settingsWindow_ ? &*settingsWindow_ : nullptr; }
    /// Null unless the workspace is started.
    KovaOnboardingWindowController* onboardingWindow() { return onboardingWindow_ ? &*onboardingWindow_ : nullptr; }
    DockAutoHideController* dockAutoHide() { return dockAutoHide_ ? &*dockAutoHide_ : nullptr; }

    /// Call once when the process is ready: reads settings of the system and starts the workspace.
    void applicationDidFinishLaunching();

    /// Begins to manage windows, without asking the user for the permission; suspended while the screen is locked.
    /// No-op if the workspace is started.
    void startWorkspace();
    /// Leaves focus mode, removes monitors and overlay, and writes the preferences to disk. No-op unless started.
    void stopWorkspace();
    bool isWorkspaceStarted() const { return workspaceIsStarted_; }
    PermissionRequest& permission() { return permission_; }

    /// Suspends the workspace when the first condition begins under which the user cannot see the screen, and resumes
    /// it when the last such condition ends. No-op unless started: the start queries the state itself.
    void handleSystemActivityEvent(SystemActivityEvent event);
    const SystemActivityState& systemActivityState() const { return systemActivityState_; }
    bool isWorkspaceSuspended() const { return workspaceIsSuspendedForSystemTransition_; }

  private:
    void readSystemSettings();
    void installMonitors();
    void followPermission();
    void suspendOrResume();
    void monitorResumeShortcut();
    void removeMonitors();

    WorkspaceServices services_;
    ShellServices shell_;
    PermissionRequest permission_;
    // The order of these members is the order in which their constructors read the preferences.
    KovaOnboardingState onboarding_;
    std::optional<LaunchAtLoginController> launchAtLogin_;
    std::optional<DockAutoHideController> dockAutoHide_;
    KovaShortcutSettings shortcutSettings_;
    WorkspaceController workspace_;
    URLHandler urls_;
    OverlayBoard overlay_;
    std::optional<UserInterfaceController> userInterface_;
    std::optional<KovaSettingsWindowController> settingsWindow_;
    // These exist while the workspace is started.
    std::optional<BackdropWindowController> backdrop_;
    std::optional<LayoutDividerWindowController> layoutDividers_;
    std::optional<TileFooterWindowController> tileFooters_;
    std::optional<WindowDragCoordinator> windowDragCoordinator_;
    std::optional<KovaOnboardingWindowController> onboardingWindow_;
    std::optional<LayoutShortcutCoordinator> layoutShortcuts_;
    std::vector<Subscription> systemActivitySubscriptions_;
    Subscription permissionSubscription_;
    Subscription pauseSubscription_;

    std::function<void()> openPalette_;
    SystemActivityState systemActivityState_;
    bool workspaceIsSuspendedForSystemTransition_ = false;
    bool workspaceIsStarted_ = false;
};

} // namespace kova
