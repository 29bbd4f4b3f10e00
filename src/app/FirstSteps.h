// What somebody is told who starts KOVA for the first time and has no window to be shown round in.
#pragma once

#include "windowing/AccessibilityWindowService.h"
#include "workspace/WorkspaceState.h"

#include <optional>
#include <string>

namespace kova {

enum class Acquaintance { newUser, knowsTheWay };

/// One line; absent when there is nothing to tell.
inline std::optional<std::string> firstSteps(Acquaintance acquaintance, AccessibilityPermissionState permission) {
    if (acquaintance == Acquaintance::knowsTheWay) return std::nullopt;
    if (permission == AccessibilityPermissionState::granted) {
        return "“kova arrange” puts every window into a tile, “kova undo” takes it back, “kova help” tells the rest.";
    }
    return "KOVA may not move windows here yet; “kova doctor” says why, and what to do.";
}

} // namespace kova
