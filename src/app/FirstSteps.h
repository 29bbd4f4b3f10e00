// Advice to a new user, for desktops on which KOVA shows no window.
#pragma once

#include "workspace/WorkspaceController.h"

#include <optional>
#include <string>

namespace kova {

enum class UserHistory { newUser, existingUser };

/// One line of advice. Absent for existing users, after the first arrangement, and in sessions in which no window can
/// be managed, for which there are other messages.
inline std::optional<std::string> firstSteps(UserHistory userHistory, const WorkspaceController& workspace) {
    const WorkspaceState& state = workspace.state();
    if (userHistory == UserHistory::existingUser || !state.lastArrangeExplanation->empty() ||
        workspace.whyWindowsAreUnavailable()) {
        return std::nullopt;
    }
    if (*state.permissionState == AccessibilityPermissionState::granted) {
        return "“kova arrange” puts every window into a tile, “kova undo” takes it back, “kova help” tells the rest.";
    }
    return "KOVA may not move windows here yet; “kova doctor” says why, and what to do.";
}

} // namespace kova
