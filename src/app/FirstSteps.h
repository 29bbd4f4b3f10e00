// What a new user is told where there is no window for it.
#pragma once

#include "workspace/WorkspaceController.h"

#include <optional>
#include <string>

namespace kova {

enum class Acquaintance { newUser, knowsTheWay };

/// One line; absent when there is nothing to tell: the first arrangement shows that the user knows the way, and a
/// session without windows to manage is told of as it is.
inline std::optional<std::string> firstSteps(Acquaintance acquaintance, const WorkspaceController& workspace) {
    const WorkspaceState& state = workspace.state();
    if (acquaintance == Acquaintance::knowsTheWay || !state.lastArrangeExplanation->empty() ||
        workspace.absenceOfWindows()) {
        return std::nullopt;
    }
    if (*state.permissionState == AccessibilityPermissionState::granted) {
        return "“kova arrange” puts every window into a tile, “kova undo” takes it back, “kova help” tells the rest.";
    }
    return "KOVA may not move windows here yet; “kova doctor” says why, and what to do.";
}

} // namespace kova
