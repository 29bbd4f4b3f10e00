// The user-level operations: whatever a shortcut, a URL, an intent, the menu or the command line asks for.
#pragma once

#include "support/Uuid.h"

#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace kova {

enum class WorkspaceDirection { left, right, up, down };

enum class StackStep { next, previous };

/// "left", "right", "up", "down".
std::string_view describe(WorkspaceDirection direction);

namespace action {
/// An absent window id stands for the focused window.
struct Focus {
    WorkspaceDirection direction;
    std::optional<std::string> windowID{}; // where the search begins
};
struct Move {
    WorkspaceDirection direction;
    std::optional<std::string> windowID{};
};
struct ActivateScene {
    Uuid id;
};
struct CycleStack {
    StackStep step = StackStep::next;
    std::optional<std::string> windowID{}; // whose tile is meant
    std::optional<std::string> targetID{}; // the tile itself
};
struct ToggleFocusZoom {
    std::optional<std::string> windowID{};
};
struct Arrange {};
struct Undo {};
} // namespace action

using WorkspaceAction = std::variant<action::Focus, action::Move, action::ActivateScene, action::CycleStack,
                                     action::ToggleFocusZoom, action::Arrange, action::Undo>;

} // namespace kova
