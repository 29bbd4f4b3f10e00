// What keys and shortcuts are called: on a label, in a sentence, and when a person types them.
#pragma once

#include "commands/KovaShortcut.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace kova {

/// The label of a key that has one whatever is written on it; absent for all others.
std::optional<std::string_view> fixedKeyLabel(std::uint16_t keyCode);

/// As a person reads it: "Ctrl+Alt+H", "Shift+Super+Left".
std::string shortcutText(const KovaShortcut& shortcut);

/// What the active keyboard layout writes on a key.
using CharactersOfKey = std::function<std::string(std::uint16_t keyCode)>;

/// From what a person types, "ctrl+alt+h": names of modifiers and keys in any case, joined by “+”. A character means
/// the key on which the active layout writes it; one that it writes nowhere, the key of an American keyboard. The text
/// says what is wrong.
std::variant<KovaShortcut, std::string> parseShortcut(std::string_view text, const CharactersOfKey& charactersOf);

} // namespace kova
