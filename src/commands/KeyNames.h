// Names of keys and shortcuts: on labels, in sentences, and as users type them.
#pragma once

#include "commands/KovaShortcut.h"
#include "windowing/KeyMonitorServicing.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace kova {

/// The label of a key with a fixed name, such as Return; absent for other keys.
std::optional<std::string_view> fixedKeyLabel(std::uint16_t keyCode);

/// The shortcut as a user reads it: "Ctrl+Alt+H" and "Shift+Super+Left", or "⌃⌥H" and "⇧⌘←".
std::string shortcutText(const KovaShortcut& shortcut, ModifierNames names);
/// The modifiers of which a shortcut needs at least one, as part of a sentence: "ctrl, alt or super".
std::string_view mainModifiers(ModifierNames names);

/// The character of a key in the active keyboard layout.
using CharactersOfKey = std::function<std::string(std::uint16_t keyCode)>;

/// Parses what a user types: names of modifiers and keys in any case, joined by “+”, as in "ctrl+alt+h", or the symbols
/// of a Mac, as in "⌃⌥H". A character means the key that types it in the active keyboard layout; if no key does, the
/// key that types it on an American keyboard. On failure returns an error text, in which modifiers are called by
/// `names`.
std::variant<KovaShortcut, std::string> parseShortcut(std::string_view text, const CharactersOfKey& charactersOf,
                                                      ModifierNames names = ModifierNames::words);

} // namespace kova
