#include "commands/KeyNames.h"

#include "commands/ShortcutRecorder.h"
#include "support/Quoted.h"
#include "support/text/Text.h"
#include "windowing/KeyCodes.h"

#include <algorithm>
#include <array>

namespace kova {

namespace {

struct NamedKey {
    std::uint16_t code;
    std::string_view label; // empty: the key is labeled with its character
    std::string_view name;  // used in sentences; users may type it in any case
};

constexpr std::array kNamedKeys = std::to_array<NamedKey>({
    {keyCode::returnKey, "↩", "Return"},
    {keyCode::tab, "⇥", "Tab"},
    {keyCode::space, "Space", "Space"},
    {keyCode::deleteBackward, "⌫", "Backspace"},
    {keyCode::escape, "⎋", "Escape"},
    {keyCode::deleteForward, "⌦", "Delete"},
    {keyCode::left, "←", "Left"},
    {keyCode::right, "→", "Right"},
    {keyCode::down, "↓", "Down"},
    {keyCode::up, "↑", "Up"},
    {keyCode::home, "Home", "Home"},
    {keyCode::end, "End", "End"},
    {keyCode::pageUp, "Page Up", "PageUp"},
    {keyCode::pageDown, "Page Down", "PageDown"},
    {keyCode::f1, "F1", "F1"},
    {keyCode::f2, "F2", "F2"},
    {keyCode::f3, "F3", "F3"},
    {keyCode::f4, "F4", "F4"},
    {keyCode::f5, "F5", "F5"},
    {keyCode::f6, "F6", "F6"},
    {keyCode::f7, "F7", "F7"},
    {keyCode::f8, "F8", "F8"},
    {keyCode::f9, "F9", "F9"},
    {keyCode::f10, "F10", "F10"},
    {keyCode::f11, "F11", "F11"},
    {keyCode::f12, "F12", "F12"},
    {keyCode::f13, "F13", "F13"},
    {keyCode::f14, "F14", "F14"},
    {keyCode::f15, "F15", "F15"},
    {keyCode::f16, "F16", "F16"},
    {keyCode::f17, "F17", "F17"},
    {keyCode::f18, "F18", "F18"},
    {keyCode::f19, "F19", "F19"},
    {keyCode::f20, "F20", "F20"},
    {keyCode::insert, "", "Insert"},
    {keyCode::contextualMenu, "", "Menu"},
    {keyCode::keypadEnter, "", "KeypadEnter"},
    {keyCode::keypadClear, "", "KeypadClear"},
    {keyCode::keypadDecimal, "", "KeypadDecimal"},
    {keyCode::keypadPlus, "", "KeypadPlus"},
    {keyCode::keypadMinus, "", "KeypadMinus"},
    {keyCode::keypadMultiply, "", "KeypadMultiply"},
    {keyCode::keypadDivide, "", "KeypadDivide"},
    {keyCode::keypadEquals, "", "KeypadEquals"},
    {keyCode::keypad0, "", "Keypad0"},
    {keyCode::keypad1, "", "Keypad1"},
    {keyCode::keypad2, "", "Keypad2"},
    {keyCode::keypad3, "", "Keypad3"},
    {keyCode::keypad4, "", "Keypad4"},
    {keyCode::keypad5, "", "Keypad5"},
    {keyCode::keypad6, "", "Keypad6"},
    {keyCode::keypad7, "", "Keypad7"},
    {keyCode::keypad8, "", "Keypad8"},
    {keyCode::keypad9, "", "Keypad9"},
    {keyCode::volumeUp, "", "VolumeUp"},
    {keyCode::volumeDown, "", "VolumeDown"},
    {keyCode::mute, "", "Mute"},
});

/// Other common names of keys.
struct OtherName {
    std::string_view typed; // in lower case
    std::uint16_t code;
};
constexpr std::array kOtherNames = std::to_array<OtherName>({
    {"enter", keyCode::returnKey},
    {"esc", keyCode::escape},
    {"del", keyCode::deleteForward},
    {"forwarddelete", keyCode::deleteForward},
    {"ins", keyCode::insert},
    {"pgup", keyCode::pageUp},
    {"pgdn", keyCode::pageDown},
    {"pgdown", keyCode::pageDown},
});

struct NamedModifier {
    std::string_view typed; // in lower case
    std::uint64_t flag;
};
constexpr std::array kModifierNames = std::to_array<NamedModifier>({
    {"ctrl", modifierFlag::control},
    {"control", modifierFlag::control},
    {"alt", modifierFlag::option},
    {"option", modifierFlag::option},
    {"opt", modifierFlag::option},
    {"shift", modifierFlag::shift},
    {"super", modifierFlag::command},
    {"command", modifierFlag::command},
    {"cmd", modifierFlag::command},
    {"win", modifierFlag::command},
    {"meta", modifierFlag::command},
});

/// The modifiers in the order in which both Linux desktops and Macs show them.
struct ShownModifier {
    std::uint64_t flag;
    std::string_view word, symbol;
};
constexpr std::array kShownModifiers = std::to_array<ShownModifier>({
    {modifierFlag::control, "Ctrl+", "⌃"},
    {modifierFlag::option, "Alt+", "⌥"},
    {modifierFlag::shift, "Shift+", "⇧"},
    {modifierFlag::command, "Super+", "⌘"},
});

std::optional<std::uint64_t> modifierNamed(std::string_view word) {
    const auto found = std::ranges::find(kModifierNames, word, &NamedModifier::typed);
    return found == kModifierNames.end() ? std::nullopt : std::optional(found->flag);
}

/// Keypad keys type the same characters as other keys. For such a character the other key is preferred.
bool isOnKeypad(std::uint16_t code) {
    return code >= keyCode::keypadDecimal && code <= keyCode::keypad9 && code != keyCode::f18 && code != keyCode::f19 &&
           code != keyCode::f20;
}

/// The first key for which `writes` returns true; keypad keys come last.
template <class Writes>
std::optional<std::uint16_t> keyThat(Writes writes) {
    for (const bool onKeypad : {false, true}) {
        for (std::uint16_t code = 0; code < keyCode::limit; ++code) {
            if (isOnKeypad(code) == onKeypad && writes(code)) return code;
        }
    }
    return std::nullopt;
}

/// `word` is in lower case.
std::optional<std::uint16_t> keyNamed(const std::string& word, const CharactersOfKey& charactersOf) {
    const auto named = std::ranges::find_if(kNamedKeys, [&](const auto& key) {
        return lowercased(key.name) == word || (!key.label.empty() && lowercased(key.label) == word);
    });
    if (named != kNamedKeys.end()) return named->code;
    const auto other = std::ranges::find(kOtherNames, word, &OtherName::typed);
    if (other != kOtherNames.end()) return other->code;
    if (const auto written = keyThat([&](std::uint16_t code) { return lowercased(charactersOf(code)) == word; })) {
        return written;
    }
    return keyThat([&](std::uint16_t code) { return americanCharacterOf(code) == word; });
}

/// Removes the symbols of modifiers at the beginning of the text; returns the modifiers.
std::uint64_t takeSymbols(std::string& text) {
    std::uint64_t modifiers = 0;
    for (bool isSymbol = true; isSymbol;) {
        isSymbol = false;
        for (const auto& modifier : kShownModifiers) {
            if (!text.starts_with(modifier.symbol)) continue;
            text.erase(0, modifier.symbol.size());
            modifiers |= modifier.flag;
            isSymbol = true;
        }
    }
    return modifiers;
}

/// Splits the text at plus signs. A plus sign in the place of a key is the key “+”.
std::vector<std::string> wordsOf(std::string_view text) {
    std::vector<std::string> words(1);
    for (const char c : text) {
        if (c == '+' && !words.back().empty()) {
            words.emplace_back();
        } else {
            words.back().push_back(c);
        }
    }
    return words;
}

} // namespace

std::optional<std::string_view> fixedKeyLabel(std::uint16_t code) {
    const auto found = std::ranges::find(kNamedKeys, code, &NamedKey::code);
    return found == kNamedKeys.end() || found->label.empty() ? std::nullopt : std::optional(found->label);
}

std::string shortcutText(const KovaShortcut& shortcut, ModifierNames names) {
    const bool usesSymbols = names == ModifierNames::symbols;
    std::string text;
    for (const auto& modifier : kShownModifiers) {
        if (shortcut.modifierFlagsRawValue & modifier.flag) text += usesSymbols ? modifier.symbol : modifier.word;
    }
    const auto named = std::ranges::find(kNamedKeys, shortcut.keyCode, &NamedKey::code);
    if (named != kNamedKeys.end()) {
        return text + std::string(usesSymbols && !named->label.empty() ? named->label : named->name);
    }
    const bool isKnown = !shortcut.keyLabel.empty() && shortcut.keyLabel != kUnknownKeyLabel;
    return text + (isKnown ? shortcut.keyLabel : "Key " + std::to_string(shortcut.keyCode));
}

std::string_view mainModifiers(ModifierNames names) {
    return names == ModifierNames::symbols ? "control, option or command" : "ctrl, alt or super";
}

std::variant<KovaShortcut, std::string> parseShortcut(std::string_view text, const CharactersOfKey& charactersOf,
                                                      ModifierNames names) {
    const bool usesSymbols = names == ModifierNames::symbols;
    std::string rest = trimmed(text);
    std::uint64_t modifiers = takeSymbols(rest);
    auto words = wordsOf(rest);
    const std::string keyWord = lowercased(trimmed(words.back()));
    words.pop_back();
    for (const std::string& word : words) {
        const auto flag = modifierNamed(lowercased(trimmed(word)));
        if (!flag) {
            return quoted(trimmed(word)) + " is no modifier; there are " +
                   (usesSymbols ? "control, option, shift and command" : "ctrl, alt, shift and super");
        }
        modifiers |= *flag;
    }
    if (keyWord.empty() || modifierNamed(keyWord)) {
        return std::string("the key is missing; a shortcut is written like “") +
               (usesSymbols ? "control+option+h" : "ctrl+alt+h") + "”";
    }
    const auto code = keyNamed(keyWord, charactersOf);
    if (!code) {
        return quoted(keyWord) +
               " is no key: name what is written on it without Shift, or left, right, up, down, return, "
               "tab, space, home, end, pageup, pagedown, insert, f1 to f20";
    }
    std::string written = charactersOf(*code);
    if (written.empty()) written = americanCharacterOf(*code); // the key was found by this character
    return KovaShortcut{*code, modifiers, keyLabel({*code, modifiers, false, written})};
}

} // namespace kova
