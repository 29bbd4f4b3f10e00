#include "commands/ShortcutRecorder.h"

#include "commands/KeyNames.h"
#include "support/Quoted.h"
#include "support/text/Text.h"
#include "windowing/KeyCodes.h"

#include <utility>

namespace kova {

std::string conflictMessage(KovaShortcutAction holder) {
    return "This shortcut is already used by " + quoted(title(holder)) + ".";
}

bool canBeShortcut(std::uint64_t modifierFlags) {
    return (modifierFlags & (modifierFlag::control | modifierFlag::option | modifierFlag::command)) != 0;
}

std::string keyLabel(const KeyPress& press) {
    if (const auto label = fixedKeyLabel(press.keyCode)) return std::string(*label);
    std::string label = uppercased(withoutControlCharactersAround(press.charactersIgnoringModifiers));
    return label.empty() ? std::string(kUnknownKeyLabel) : label;
}

ShortcutRecorder::Step ShortcutRecorder::take(const KeyPress& press) {
    const auto changed = [this](std::optional<KovaShortcut> shortcut, Outcome outcome) -> Step {
        return {settings_.setShortcut(std::move(shortcut), action_) ? outcome : Outcome::refused, ""};
    };
    if (press.keyCode == keyCode::deleteBackward || press.keyCode == keyCode::deleteForward) {
        return changed(std::nullopt, Outcome::cleared);
    }
    if (press.keyCode == keyCode::escape) return {Outcome::canceled, ""};

    const std::uint64_t modifiers = press.modifierFlags & modifierFlag::ofShortcuts;
    if (!canBeShortcut(modifiers)) return {Outcome::refused, ""};
    KovaShortcut shortcut{press.keyCode, modifiers, keyLabel(press)};
    if (const auto holder = settings_.conflictingAction(shortcut, action_)) {
        return {Outcome::refused, conflictMessage(*holder)};
    }
    return changed(std::move(shortcut), Outcome::recorded);
}

} // namespace kova
