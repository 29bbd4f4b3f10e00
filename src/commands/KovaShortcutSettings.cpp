#include "commands/KovaShortcutSettings.h"

#include "persistence/PreferenceKeys.h"
#include "persistence/StoredValues.h"

#include <utility>

namespace kova {

namespace {

KovaShortcutConfiguration storedIn(PreferencesStore& store, const std::string& key) {
    return storedRecord<KovaShortcutConfiguration>(store, key, decodeShortcutConfiguration)
        .value_or(KovaShortcutConfiguration::standard());
}

} // namespace

KovaShortcutSettings::KovaShortcutSettings(PreferencesStore& store) :
    store_(store), storageKey_(preferenceKey::keyboardShortcuts) {
    configuration.set(storedIn(store_, storageKey_));
    saving_ = configuration.observe([this](const KovaShortcutConfiguration& changed) {
        store_.setValue(storageKey_, PreferenceData{encodeShortcutConfiguration(changed)});
    });
}

std::optional<KovaShortcut> KovaShortcutSettings::shortcut(KovaShortcutAction action) const {
    const KovaShortcut* found = configuration->shortcut(action);
    return found ? std::optional(*found) : std::nullopt;
}

bool KovaShortcutSettings::setShortcut(std::optional<KovaShortcut> shortcut, KovaShortcutAction action) {
    if (shortcut) {
        shortcut->modifierFlagsRawValue &= modifierFlag::ofShortcuts;
        if (conflictingAction(*shortcut, action)) return false;
    }
    KovaShortcutConfiguration changed = *configuration;
    changed.setShortcut(std::move(shortcut), action);
    configuration.set(std::move(changed));
    return true;
}

void KovaShortcutSettings::restoreDefaults() {
    configuration.set(KovaShortcutConfiguration::standard());
}

std::optional<KovaShortcutAction> KovaShortcutSettings::conflictingAction(const KovaShortcut& shortcut,
                                                                          KovaShortcutAction edited) const {
    for (const auto action : kShortcutActions) {
        const KovaShortcut* other = action == edited ? nullptr : configuration->shortcut(action);
        if (other && other->keyCode == shortcut.keyCode &&
            other->modifierFlagsRawValue == shortcut.modifierFlagsRawValue)
            return action;
    }
    return std::nullopt;
}

} // namespace kova
