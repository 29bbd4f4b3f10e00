// The user-level operations: whatever a shortcut, a URL, an intent, the menu or the command line asks for.
#pragma once

#include "support/Uuid.h"

#include <string>
#include <string_view>
#include <variant>

namespace kova {

enum class WorkspaceDirection { left, right, up, down };

/// "left", "right", "up", "down".
std::string_view describe(WorkspaceDirection direction);

namespace action {
struct Focus {
    WorkspaceDirection direction;
};
struct Move {
    WorkspaceDirection direction;
};
struct ActivateScene {
    Uuid id;
};
struct CycleStack {};
struct ToggleFocusZoom {};
struct Arrange {};
struct Undo {};
} // namespace action

using WorkspaceAction = std::variant<action::Focus, action::Move, action::ActivateScene, action::CycleStack,
                                     action::ToggleFocusZoom, action::Arrange, action::Undo>;

} // namespace kova
