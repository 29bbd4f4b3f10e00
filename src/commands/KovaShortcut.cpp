#include "commands/KovaShortcut.h"

#include <algorithm>

namespace kova {

namespace {

struct ActionNames {
    std::string_view rawValue;
    std::string_view title;
};

constexpr std::array<ActionNames, kShortcutActions.size()> kNames = {{
    {"commandCenter", "Legacy KOVA Actions"},
    {"previousLayout", "Previous Layout"},
    {"nextLayout", "Next Layout"},
    {"arrangeWindows", "Arrange Windows into Zones"},
    {"undo", "Undo Window Action"},
    {"focusLeft", "Focus Left"},
    {"focusRight", "Focus Right"},
    {"focusUp", "Focus Up"},
    {"focusDown", "Focus Down"},
    {"moveLeft", "Move Window Left"},
    {"moveRight", "Move Window Right"},
    {"moveUp", "Move Window Up"},
    {"moveDown", "Move Window Down"},
    {"focusZoom", "Enter or Exit Focus Mode"},
    {"cycleStack", "Next Window in Current Zone"},
}};

const ActionNames& namesOf(KovaShortcutAction action) {
    return kNames[static_cast<std::size_t>(action)];
}

} // namespace

KovaShortcutEvent eventOf(const KeyPress& press) {
    return {press.keyCode, press.modifierFlags & modifierFlag::ofShortcuts, press.isRepeat};
}

std::string_view rawValue(KovaShortcutAction action) {
    return namesOf(action).rawValue;
}

std::optional<KovaShortcutAction> shortcutActionFrom(std::string_view text) {
    const auto found = std::ranges::find(kShortcutActions, text, [](auto action) { return rawValue(action); });
    return found == kShortcutActions.end() ? std::nullopt : std::optional(*found);
}

std::string_view title(KovaShortcutAction action) {
    return namesOf(action).title;
}

} // namespace kova
