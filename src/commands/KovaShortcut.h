// A keyboard shortcut, and the actions that can have one. Keys are the Mac's virtual key codes on every platform, so
// that one stored configuration serves all of them.
#pragma once

#include "windowing/KeyMonitorServicing.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kova {

struct KovaShortcut {
    std::uint16_t keyCode = 0;
    std::uint64_t modifierFlagsRawValue = 0; // of `modifierFlag::ofShortcuts` only
    std::string keyLabel;                    // the key's label when the shortcut was made
    bool operator==(const KovaShortcut&) const = default;
};

/// A key press, for matching against shortcuts.
struct KovaShortcutEvent {
    std::uint16_t keyCode = 0;
    std::uint64_t modifierFlagsRawValue = 0; // of `modifierFlag::ofShortcuts` only
    bool isRepeat = false;
    bool operator==(const KovaShortcutEvent&) const = default;
};

/// Drops Caps Lock, Function and other modifiers that shortcuts do not use.
KovaShortcutEvent eventOf(const KeyPress& press);

enum class KovaShortcutAction : std::uint8_t {
    commandCenter, // exists only for older configurations; its shortcut does nothing
    previousLayout,
    nextLayout,
    arrangeWindows,
    undo,
    focusLeft,
    focusRight,
    focusUp,
    focusDown,
    moveLeft,
    moveRight,
    moveUp,
    moveDown,
    focusZoom,
    cycleStack,
    // The following actions have no default shortcut.
    previousInStack,
    swapLeft,
    swapRight,
    swapUp,
    swapDown,
    focusNextDisplay,
    focusPreviousDisplay,
    moveToNextDisplay,
    moveToPreviousDisplay,
    toggleFloating,
    placeInTile1,
    placeInTile2,
    placeInTile3,
    placeInTile4,
    placeInTile5,
    placeInTile6,
    placeInTile7,
    placeInTile8,
    placeInTile9,
    pauseOrResume,
    openPalette,
};

/// All actions, in the order in which they are shown and searched for conflicts.
inline constexpr std::array kShortcutActions = {
    KovaShortcutAction::commandCenter,
    KovaShortcutAction::previousLayout,
    KovaShortcutAction::nextLayout,
    KovaShortcutAction::arrangeWindows,
    KovaShortcutAction::undo,
    KovaShortcutAction::focusLeft,
    KovaShortcutAction::focusRight,
    KovaShortcutAction::focusUp,
    KovaShortcutAction::focusDown,
    KovaShortcutAction::moveLeft,
    KovaShortcutAction::moveRight,
    KovaShortcutAction::moveUp,
    KovaShortcutAction::moveDown,
    KovaShortcutAction::focusZoom,
    KovaShortcutAction::cycleStack,
    KovaShortcutAction::previousInStack,
    KovaShortcutAction::swapLeft,
    KovaShortcutAction::swapRight,
    KovaShortcutAction::swapUp,
    KovaShortcutAction::swapDown,
    KovaShortcutAction::focusNextDisplay,
    KovaShortcutAction::focusPreviousDisplay,
    KovaShortcutAction::moveToNextDisplay,
    KovaShortcutAction::moveToPreviousDisplay,
    KovaShortcutAction::toggleFloating,
    KovaShortcutAction::placeInTile1,
    KovaShortcutAction::placeInTile2,
    KovaShortcutAction::placeInTile3,
    KovaShortcutAction::placeInTile4,
    KovaShortcutAction::placeInTile5,
    KovaShortcutAction::placeInTile6,
    KovaShortcutAction::placeInTile7,
    KovaShortcutAction::placeInTile8,
    KovaShortcutAction::placeInTile9,
    KovaShortcutAction::pauseOrResume,
    KovaShortcutAction::openPalette,
};

/// The action's name in stored configurations: "focusLeft".
std::string_view rawValue(KovaShortcutAction action);
/// Absent if there is no such action.
std::optional<KovaShortcutAction> shortcutActionFrom(std::string_view rawValue);
/// The action's name for users: "Focus Left".
std::string_view title(KovaShortcutAction action);

} // namespace kova
