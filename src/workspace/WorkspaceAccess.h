// Whether windows may be moved now, and why not.
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

    bool isSuspendedOrLocked() const;
    bool mayMoveWindows() const;
    std::optional<std::string> whyNoWindowMayMove() const;
    /// The message if the permission is missing.
    std::string permissionProblem() const;
    /// Why windows cannot be managed in this session at all; absent if they can, or could with the permission.
    std::optional<std::string> whyWindowsAreUnavailable() const { return services_.accessibility.unavailableReason(); }
    Outcome requireWindowAccess() const;
    Outcome requireVisibleScreen() const;
    Outcome refuse(const std::string& reason) const;
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
