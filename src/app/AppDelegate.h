// The agent's heart: owns the workspace for the life of the process, starts it and stops it, and suspends it while the
// user cannot see the screen. Main thread only.
#pragma once

#include "app/BackdropWindowController.h"
#include "app/DockAutoHideController.h"
#include "app/KovaOnboardingState.h"
#include "app/KovaSettingsWindowController.h"
#include "app/LaunchAtLoginController.h"
#include "app/LayoutDividerWindowController.h"
#include "app/OnboardingServicing.h"
#include "app/OverlayBoard.h"
#include "app/SystemActivityState.h"
#include "app/TileFooterWindowController.h"
#include "app/UserInterfaceController.h"
#include "app/WindowDragCoordinator.h"
#include "commands/LayoutShortcutCoordinator.h"
#include "commands/URLHandler.h"
#include "workspace/WorkspaceController.h"

#include <optional>
#include <string>
#include <vector>

namespace kova {

/// What the desktop has beside windows; null where it has nothing. All of it outlives the delegate.
struct ShellServices {
    PointerMonitorServicing* pointer = nullptr;
    DividerHandleServicing* dividerHandles = nullptr;
    std::vector<SystemActivityServicing*> systemActivity{}; // each tells of its own
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
    /// Stops the workspace if nobody did.
    ~AppDelegate();
    AppDelegate(const AppDelegate&) = delete;
    AppDelegate& operator=(const AppDelegate&) = delete;

    WorkspaceController& workspace() { return workspace_; }
    URLHandler& urls() { return urls_; }
    /// What the desktop asks the program to open.
    void openURLs(const std::vector<std::string>& urls);
    KovaShortcutSettings& shortcutSettings() { return shortcutSettings_; }
    KovaOnboardingState& onboarding() { return onboarding_; }
    /// What the overlay shows; empty unless the workspace is started.
    OverlayServing& overlay() { return overlay_; }
    /// Null where the desktop has no such service.
    LaunchAtLoginController* launchAtLogin() { return launchAtLogin_ ? &*launchAtLogin_ : nullptr; }
    UserInterfaceController* userInterface() { return userInterface_ ? &*userInterface_ : nullptr; }
    /// Null before the launch.
    KovaSettingsWindowController* settingsWindow() { return settingsWindow_ ? &*settingsWindow_ : nullptr; }
    DockAutoHideController* dockAutoHide() { return dockAutoHide_ ? &*dockAutoHide_ : nullptr; }

    /// What is to be done once the process is up: settings of the system are looked at, and the workspace is started.
    void applicationDidFinishLaunching();

    /// Begins to manage windows, without asking the user for the permission; on a locked screen it begins suspended.
    /// Does nothing when it is started already.
    void startWorkspace();
    /// Ends it: the desktop gets back what was borrowed, and the preferences are on disk. Does nothing unless started.
    void stopWorkspace();
    bool isWorkspaceStarted() const { return workspaceIsStarted_; }
    /// Shows the onboarding to a new user; a user who has given the permission already needs none.
    void showOnboardingIfNeeded();
    /// Whether there is a permission that the user can be asked for.
    bool canAskForPermission() const { return shell_.onboarding != nullptr; }
    /// The user wants to give the permission: the system's question, and where that was shown before or is of no use,
    /// the page of the system's settings.
    void askForPermission();

    /// Suspends with the first condition that keeps the user from the screen, resumes once there is none left. Does
    /// nothing unless started: what was missed is asked for at the start.
    void handleSystemActivityEvent(SystemActivityEvent event);
    const SystemActivityState& systemActivityState() const { return systemActivityState_; }
    bool isWorkspaceSuspended() const { return workspaceIsSuspendedForSystemTransition_; }

  private:
    std::optional<OnboardingOffer> dockOffer();
    void readSystemSettings();
    void installMonitors();
    void followPermission();
    void completeOnboarding();
    void suspendOrResume();
    void hearResumeShortcut();
    void removeMonitors();

    WorkspaceServices services_;
    ShellServices shell_;
    // In the order in which they read their preferences.
    KovaOnboardingState onboarding_;
    std::optional<LaunchAtLoginController> launchAtLogin_;
    std::optional<DockAutoHideController> dockAutoHide_;
    KovaShortcutSettings shortcutSettings_;
    WorkspaceController workspace_;
    URLHandler urls_;
    OverlayBoard overlay_;
    std::optional<UserInterfaceController> userInterface_;
    std::optional<KovaSettingsWindowController> settingsWindow_;
    // While the workspace is started.
    std::optional<BackdropWindowController> backdrop_;
    std::optional<LayoutDividerWindowController> layoutDividers_;
    std::optional<TileFooterWindowController> tileFooters_;
    std::optional<WindowDragCoordinator> windowDragCoordinator_;
    std::optional<LayoutShortcutCoordinator> layoutShortcuts_;
    std::vector<Subscription> systemActivitySubscriptions_;
    Subscription permissionSubscription_;
    Subscription pauseSubscription_;

    SystemActivityState systemActivityState_;
    bool workspaceIsSuspendedForSystemTransition_ = false;
    bool workspaceIsStarted_ = false;
    bool hasAskedForPermission_ = false; // by the system's question
};

} // namespace kova
