// The user's shortcuts: reads, changes and stores them. A change that would give one combination to two actions is
// refused; a stored configuration in which two actions have one combination is kept unchanged. Main thread only.
#pragma once

#include "commands/KovaShortcutConfiguration.h"
#include "persistence/PreferencesStore.h"
#include "support/Published.h"

#include <optional>
#include <string>

namespace kova {

class KovaShortcutSettings {
  public:
    /// Reads the stored configuration. Uses the default configuration if none is stored, or if the stored one cannot be
    /// read. The store outlives the settings.
    explicit KovaShortcutSettings(PreferencesStore& store);
    KovaShortcutSettings(const KovaShortcutSettings&) = delete;
    KovaShortcutSettings& operator=(const KovaShortcutSettings&) = delete;

    /// Every change is saved.
    Published<KovaShortcutConfiguration> configuration;
    /// True while a shortcut is being recorded; meanwhile shortcuts have no effect.
    Published<bool> isRecording;

    std::optional<KovaShortcut> shortcut(KovaShortcutAction action) const;
    /// An absent shortcut removes the action's shortcut. Returns false and changes nothing if another action has the
    /// combination.
    [[nodiscard]] bool setShortcut(std::optional<KovaShortcut> shortcut, KovaShortcutAction action);
    void restoreDefaults();
    /// The first action other than `edited` that has the shortcut's key and modifiers.
    std::optional<KovaShortcutAction> conflictingAction(const KovaShortcut& shortcut, KovaShortcutAction edited) const;

  private:
    PreferencesStore& store_;
    std::string storageKey_;
    Subscription saving_;
};

} // namespace kova
