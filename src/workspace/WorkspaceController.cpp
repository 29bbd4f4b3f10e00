#include "workspace/WorkspaceController.h"

#include "workspace/WindowContinuity.h"
#include "workspace/WorkspacePreferences.h"

#include <algorithm>
#include <utility>

namespace kova {

namespace {

constexpr Seconds kStatusMessageDuration{4};

} // namespace

WorkspaceController::WorkspaceController(const WorkspaceServices& services) :
    services_(services), windowService_(std::make_shared<AccessibilityWindowService>(
                             services.accessibility, services.applications, services.screens, services.queue)),
    displays_(services.queue, [this] { displaysSettled(); }),
    pointer_(
        services.queue, [this] { applyDividerDrag(); }, [this] { presentationResumed(); }),
    session_(services.queue, services.preferences, [this] { return describeSession(); }),
    arranger_(services.queue, services.preferences),
    refreshCycle_(windowService_, services.session, services.changes, services.queue, services.pollingQueue,
                  {[this](PollResult result) { applyPoll(std::move(result)); },
                   [this] { return hasUnfinishedBusiness(); }, [this] { return knownWindows(liveWindows_.all()); }}) {
    WorkspacePreferences loaded = loadWorkspacePreferences(services_.preferences);
    state_.profile.set(std::move(loaded.profile));
    arranger_.loadLearning(std::move(loaded.learning));
    state_.useThemeBackground.set(loaded.useThemeBackground);
    state_.showBrain.set(loaded.showBrain);
    state_.showTileBackgrounds.set(loaded.showTileBackgrounds);
    state_.accentColorID.set(std::move(loaded.accentColorID));
    state_.scenes.set(std::move(loaded.document.scenes));
    state_.rules.set(std::move(loaded.document.rules));
    state_.activeSceneID.set(loaded.document.activeSceneID);
    state_.continuousManagementEnabled.set(loaded.continuousManagementEnabled);
    state_.bringsNextForward.set(loaded.bringsNextForward);
    readScreens();
    watchSession();
    subscriptions_.push_back(state_.focusMode.observe([this](const auto& mode) {
        if (mode || !displays_.takeHeldBackByZoom()) return;
        services_.queue.post(lifetime_.guard([this] {
            if (mayMoveWindows()) placeHomelessWindows();
        }));
    }));
    subscriptions_.push_back(services_.screens.observeScreens(lifetime_.guard([this] { screensChanged(); })));
}

WorkspaceController::~WorkspaceController() = default;

void WorkspaceController::start(bool promptForPermission) {
    refreshCycle_.begin();
    readScreens();
    state_.permissionState.set(windowService_->permissionState());
    if (promptForPermission && *state_.permissionState != AccessibilityPermissionState::granted) {
        state_.permissionState.set(windowService_->requestPermission(true));
    }
    refresh();
    refreshCycle_.startTimer();
}

void WorkspaceController::stop() {
    abandonDrags();
    (void)leaveFocusMode(); // whoever sees it
    if (isRunning()) session_.save();
    for (const auto& id : liveWindows_.minimized().takeAll()) {
        if (const ManagedWindow* window = findLive(id)) windowService_->unminimize(*window);
    }
    services_.accessibility.flush();
    session_.forgetReturns();
    (void)arranger_.supersede();
    awaited_.dropLaunches();
    publishSceneReport(SceneReport::State::abandoned);
    awaited_.scene() = {};
    (void)recovery_.unseenTime().end(services_.queue.uptime());
    refreshCycle_.end();
    state_.isSuspended.set(false);
    recovery_.clear();
    recovery_.detectedLockedLoginSession = false;
}

void WorkspaceController::refresh() {
    refreshCycle_.refresh();
}

void WorkspaceController::recheckAccessibility() {
    // A permission that was just given is noticed by the poll, which then does all that belongs to it.
    const auto now = windowService_->permissionState();
    if (now != AccessibilityPermissionState::granted) state_.permissionState.set(now);
    refresh();
}

void WorkspaceController::showStatusMessage(const std::string& text) {
    state_.lastActionMessage.set(text);
    // By serial rather than by text: the same message twice gets its full time twice.
    const auto serial = ++statusMessageSerial_;
    services_.queue.after(kStatusMessageDuration, lifetime_.guard([this, serial] {
        if (serial == statusMessageSerial_) state_.lastActionMessage.set(std::nullopt);
    }));
}

Outcome WorkspaceController::done(const std::string& message) {
    showStatusMessage(message);
    return Outcome::done(message);
}

Outcome WorkspaceController::refuse(const std::string& reason) {
    showStatusMessage(reason);
    return refuseSilently(reason);
}

/// Without the permission that is the reason, whatever else is in the way.
Outcome WorkspaceController::refuseSilently(std::string reason) const {
    const bool isGranted = *state_.permissionState == AccessibilityPermissionState::granted;
    return isGranted ? Outcome::refused(std::move(reason))
                     : Outcome::refused(permissionProblem(), RefusalCode::noPermission);
}

std::string WorkspaceController::permissionProblem() const {
    if (const auto absence = absenceOfWindows()) return *absence;
    return windowService_->stalePermission().value_or("Accessibility permission is required");
}

/// For operations that move or raise windows, which cannot be seen on a dark or locked screen.
Outcome WorkspaceController::requireWindowAccess() {
    const bool isGranted = *state_.permissionState == AccessibilityPermissionState::granted;
    return isGranted ? requireVisibleScreen() : refuse(permissionProblem());
}

Outcome WorkspaceController::requireVisibleScreen() {
    const auto reason = whyNothingIsSeen();
    return reason ? refuse(*reason) : Outcome::done();
}

/// Why no window is moved now, the permission aside; absent when windows may be moved.
std::optional<std::string> WorkspaceController::whyNothingIsSeen() const {
    if (*state_.isPaused) return "KOVA is paused; “kova resume” goes on";
    if (recovery_.detectedLockedLoginSession) return "The screen is locked";
    if (refreshCycle_.isSuspended()) return "Suspended while the screen is asleep, locked or another user's";
    return std::nullopt;
}

const ManagedWindow* WorkspaceController::windowOfDialog(const ManagedWindow& dialog) const {
    return dialog.parentID ? findLive(*dialog.parentID) : nullptr;
}

} // namespace kova
