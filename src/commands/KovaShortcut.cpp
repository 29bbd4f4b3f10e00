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
    {"previousInStack", "Previous Window in Current Tile"},
    {"swapLeft", "Swap with Window Left"},
    {"swapRight", "Swap with Window Right"},
    {"swapUp", "Swap with Window Above"},
    {"swapDown", "Swap with Window Below"},
    {"focusNextDisplay", "Focus Next Display"},
    {"focusPreviousDisplay", "Focus Previous Display"},
    {"moveToNextDisplay", "Move Window to Next Display"},
    {"moveToPreviousDisplay", "Move Window to Previous Display"},
    {"toggleFloating", "Float Window or Put It into a Tile"},
    {"placeInTile1", "Place Window in Tile 1"},
    {"placeInTile2", "Place Window in Tile 2"},
    {"placeInTile3", "Place Window in Tile 3"},
    {"placeInTile4", "Place Window in Tile 4"},
    {"placeInTile5", "Place Window in Tile 5"},
    {"placeInTile6", "Place Window in Tile 6"},
    {"placeInTile7", "Place Window in Tile 7"},
    {"placeInTile8", "Place Window in Tile 8"},
    {"placeInTile9", "Place Window in Tile 9"},
    {"pauseOrResume", "Pause or Resume KOVA"},
    {"openPalette", "Open Palette"},
}};

static_assert(std::ranges::none_of(kNames, &std::string_view::empty, &ActionNames::rawValue), "an action has no name");

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
