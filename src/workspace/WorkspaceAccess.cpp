#include "workspace/WorkspaceAccess.h"

#include "workspace/WorkspaceParts.h"

#include <utility>

namespace kova {

WorkspaceAccess::WorkspaceAccess(WorkspaceParts& parts, const RefreshCycle& refreshCycle) :
    services_(parts.services), windowService_(*parts.windowService), state_(parts.state), recovery_(parts.recovery),
    messages_(parts.messages), refreshCycle_(refreshCycle) {}

Outcome WorkspaceAccess::refuse(const std::string& reason) const {
    messages_.show(reason);
    return refuseSilently(reason);
}

Outcome WorkspaceAccess::refuseSilently(std::string reason) const {
    const bool isGranted = *state_.permissionState == AccessibilityPermissionState::granted;
    return isGranted ? Outcome::refused(std::move(reason))
                     : Outcome::refused(permissionProblem(), RefusalCode::noPermission);
}

std::string WorkspaceAccess::permissionProblem() const {
    if (const auto reason = whyWindowsAreUnavailable()) return *reason;
    return windowService_.stalePermission().value_or("Accessibility permission is required");
}

Outcome WorkspaceAccess::requireWindowAccess() const {
    const bool isGranted = *state_.permissionState == AccessibilityPermissionState::granted;
    return isGranted ? requireVisibleScreen() : refuse(permissionProblem());
}

Outcome WorkspaceAccess::requireVisibleScreen() const {
    const auto reason = whyNoWindowMayMove();
    return reason ? refuse(*reason) : Outcome::done();
}

std::optional<std::string> WorkspaceAccess::whyNoWindowMayMove() const {
    if (*state_.isPaused) return "KOVA is paused; “kova resume” goes on";
    if (recovery_.isLocked()) return "The screen is locked";
    if (refreshCycle_.isSuspended()) return "Suspended while the screen is asleep, locked or another user's";
    return std::nullopt;
}

bool WorkspaceAccess::isSuspendedOrLocked() const {
    return refreshCycle_.isSuspended() || recovery_.isLocked();
}

bool WorkspaceAccess::mayMoveWindows() const {
    return isRunning() && !isSuspendedOrLocked() && *state_.permissionState == AccessibilityPermissionState::granted;
}

} // namespace kova
