#include "app/AppDelegate.h"

#include "support/Log.h"

#include <utility>

namespace kova {

namespace {

template <class Controller, class Service>
std::optional<Controller> controllerOf(Service* service, PreferencesStore& preferences) {
    // Constructed in place, since its callbacks have its address.
    return service ? std::optional<Controller>(std::in_place, *service, preferences) : std::nullopt;
}

} // namespace

AppDelegate::AppDelegate(const WorkspaceServices& services, const ShellServices& shell) :
    services_(services), shell_(shell), permission_(services.accessibility, shell.onboarding),
    onboarding_(services.preferences),
    launchAtLogin_(controllerOf<LaunchAtLoginController>(shell.launchAtLogin, services.preferences)),
    dockAutoHide_(controllerOf<DockAutoHideController>(shell.dockAutoHide, services.preferences)),
    shortcutSettings_(services.preferences), workspace_(services), urls_(workspace_, services.queue) {
    if (shell.userInterface) userInterface_.emplace(*shell.userInterface, services.preferences, services.queue);
}

AppDelegate::~AppDelegate() {
    stopWorkspace();
    if (settingsWindow_) settingsWindow_->close();
}

void AppDelegate::openURLs(const std::vector<std::string>& urls) {
    for (const auto& url : urls) (void)urls_.handle(url);
}

void AppDelegate::applicationDidFinishLaunching() {
    if (launchAtLogin_) launchAtLogin_->refreshStatus();
    if (dockAutoHide_ && *dockAutoHide_->hidesSystemDock()) {
        dockAutoHide_->applyDockPreference();
    } else if (dockAutoHide_) {
        dockAutoHide_->refreshDockState(); // without such a choice of the user, the start does not change the Dock
    }
    settingsWindow_.emplace(overlay_, userInterface(), [this] { readSystemSettings(); });
    startWorkspace();
}

void AppDelegate::readSystemSettings() {
    if (launchAtLogin_) launchAtLogin_->refreshStatus();
    if (dockAutoHide_ && !*dockAutoHide_->isPreferenceConfigured()) dockAutoHide_->refreshDockState();
}

void AppDelegate::startWorkspace() {
    if (workspaceIsStarted_) return;
    workspaceIsStarted_ = true;
    if (userInterface_) userInterface_->start(); // kova-ui starts while the agent reads the windows
    backdrop_.emplace(workspace_, overlay_).show();
    if (shell_.dividerHandles) {
        layoutDividers_.emplace(workspace_, *shell_.dividerHandles, overlay_, services_.queue);
    }
    tileFooters_.emplace(workspace_, overlay_, services_.queue);
    if (shell_.pointer) windowDragCoordinator_.emplace(workspace_, *shell_.pointer, overlay_, services_.queue);
    onboardingWindow_.emplace(KovaOnboardingWindowController::Services{.workspace = workspace_,
                                                                       .state = onboarding_,
                                                                       .permission = permission_,
                                                                       .board = overlay_,
                                                                       .dock = dockAutoHide(),
                                                                       .dialog = shell_.onboarding,
                                                                       .userInterface = userInterface()});
    if (shell_.keys)
        layoutShortcuts_.emplace(workspace_, shortcutSettings_, *shell_.keys, services_.queue, [this] {
            if (openPalette_) openPalette_();
        });
    workspace_.start(false);
    installMonitors();
    permissionSubscription_ = workspace_.state().permissionState.observe([this](auto) { followPermission(); });
    pauseSubscription_ = workspace_.state().isPaused.observe([this](bool) { suspendOrResume(); });
    for (SystemActivityServicing* source : shell_.systemActivity) {
        systemActivitySubscriptions_.push_back(
            source->observeSystemActivity([this](SystemActivityEvent event) { handleSystemActivityEvent(event); }));
    }
    log(LogLevel::note, "workspace started");
    // No event reports a screen lock that began before the start.
    if (services_.session.isLoginSessionScreenLocked()) handleSystemActivityEvent(SystemActivityEvent::screenDidLock);
    onboardingWindow_->showIfNeeded();
}

void AppDelegate::stopWorkspace() {
    if (!workspaceIsStarted_) return;
    systemActivitySubscriptions_.clear();
    permissionSubscription_ = {};
    pauseSubscription_ = {};
    workspace_.perform(action::Switch{action::Setting::isPaused, false});
    // A drag in progress is canceled first.
    removeMonitors();
    layoutShortcuts_.reset();
    onboardingWindow_.reset();
    windowDragCoordinator_.reset();
    tileFooters_.reset();
    layoutDividers_.reset();
    backdrop_.reset();
    if (userInterface_) userInterface_->stop();
    workspace_.stop();
    services_.preferences.synchronize();
    workspaceIsSuspendedForSystemTransition_ = false;
    systemActivityState_ = {};
    workspaceIsStarted_ = false;
    log(LogLevel::note, "workspace stopped");
}

/// Installs the monitors of pointer and keys anew if the permission is granted. Some desktops never send events to a
/// monitor that was installed before the permission was granted.
void AppDelegate::installMonitors() {
    removeMonitors();
    if (*workspace_.state().permissionState != AccessibilityPermissionState::granted) return;
    if (windowDragCoordinator_) windowDragCoordinator_->installMonitor();
    if (layoutShortcuts_) layoutShortcuts_->installMonitors();
}

/// While KOVA is paused, the shortcut that resumes KOVA works; while the screen cannot be seen, no shortcut works.
void AppDelegate::monitorResumeShortcut() {
    if (!workspaceIsSuspendedForSystemTransition_ || !layoutShortcuts_) return;
    layoutShortcuts_->removeMonitors();
    if (*workspace_.state().isPaused && systemActivityState_.isAvailable()) layoutShortcuts_->installMonitors();
}

void AppDelegate::followPermission() {
    if (*workspace_.state().permissionState != AccessibilityPermissionState::granted) return;
    onboardingWindow_->permissionWasGranted();
    if (!workspaceIsSuspendedForSystemTransition_) installMonitors();
}

void AppDelegate::removeMonitors() {
    if (layoutShortcuts_) layoutShortcuts_->removeMonitors();
    if (windowDragCoordinator_) windowDragCoordinator_->removeMonitor();
}

void AppDelegate::handleSystemActivityEvent(SystemActivityEvent event) {
    if (!workspaceIsStarted_) return;
    systemActivityState_.update(event);
    suspendOrResume();
}

/// KOVA is suspended while the user cannot see the screen, or has paused KOVA.
void AppDelegate::suspendOrResume() {
    const bool isPaused = *workspace_.state().isPaused;
    const bool isAvailable = systemActivityState_.isAvailable();
    const bool suspends = isPaused || !isAvailable;
    if (suspends == workspaceIsSuspendedForSystemTransition_) {
        monitorResumeShortcut();
        return;
    }
    workspaceIsSuspendedForSystemTransition_ = suspends;
    if (suspends) {
        workspace_.suspendForSystemTransition();
        removeMonitors(); // the overlay stays as it is
        monitorResumeShortcut();
        log(LogLevel::note, isPaused ? "workspace paused" : "workspace suspended");
        return;
    }
    workspace_.resumeAfterSystemTransition();
    backdrop_->show();
    if (layoutDividers_) layoutDividers_->refresh();
    tileFooters_->refresh();
    installMonitors();
    log(LogLevel::note, "workspace resumed");
}

} // namespace kova
