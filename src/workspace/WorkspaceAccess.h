// Decides whether windows may be moved now, and refuses actions with the reason if they may not.
#pragma once

#include "windowing/AccessibilityWindowService.h"
#include "workspace/Outcome.h"
#include "workspace/RefreshCycle.h"
#include "workspace/StatusMessages.h"
#include "workspace/TransitionRecovery.h"
#include "workspace/WorkspaceServices.h"
#include "workspace/WorkspaceState.h"

#include <optional>
#include <string>

namespace kova {

struct WorkspaceParts;

class WorkspaceAccess {
  public:
    WorkspaceAccess(WorkspaceParts& parts, const RefreshCycle& refreshCycle);

    /// True during a suspension, when the user cannot see the effect of an action.
    bool isSuspendedOrLocked() const;
    bool mayMoveWindows() const;
    /// The reason why no window is moved now, apart from a missing permission. Absent if there is no such reason.
    std::optional<std::string> whyNoWindowMayMove() const;
    /// What the user is told while the permission is missing.
    std::string permissionProblem() const;
    /// The reason why windows cannot be managed in this login session at all. Absent if they can be managed, or could
    /// be with the permission.
    std::optional<std::string> whyWindowsAreUnavailable() const { return services_.accessibility.unavailableReason(); }
    /// Refused if the permission is missing or the screen is not visible. For operations that move or raise windows.
    Outcome requireWindowAccess() const;
    /// Refused while KOVA is paused, or the screen is dark, locked or used by another user.
    Outcome requireVisibleScreen() const;
    /// A refusal with the reason, which also becomes the status message.
    Outcome refuse(const std::string& reason) const;
    /// A refusal without a status message. If the permission is missing, this replaces the reason.
    Outcome refuseSilently(std::string reason) const;
    bool isRunning() const { return refreshCycle_.isRunning(); }

  private:
    const WorkspaceServices& services_;
    const AccessibilityWindowService& windowService_;
    const WorkspaceState& state_;
    const TransitionRecovery& recovery_;
    StatusMessages& messages_;
    const RefreshCycle& refreshCycle_;
};

} // namespace kova
