#include "workspace/WorkspaceAction.h"

namespace kova {

namespace {

template <class Action>
ActionTraits traitsOfKind(const Action&) {
    if constexpr (requires { Action::kTraits; }) return Action::kTraits;
    return {};
}

/// All window commands move or raise windows.
ActionTraits traitsOfKind(const WindowCommand&) {
    return {.needs = ActionTraits::Needs::windowAccess, .focusMode = ActionTraits::FocusMode::closes};
}

} // namespace

std::string_view describe(WorkspaceDirection direction) {
    switch (direction) {
    case WorkspaceDirection::left:
        return "left";
    case WorkspaceDirection::right:
        return "right";
    case WorkspaceDirection::up:
        return "up";
    case WorkspaceDirection::down:
        return "down";
    }
    return "";
}

ActionTraits traitsOf(const WorkspaceAction& action) {
    return std::visit([](const auto& each) { return traitsOfKind(each); }, action);
}

} // namespace kova
