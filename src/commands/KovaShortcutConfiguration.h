// The shortcuts of all actions, and their stored form: an object with the members "previousLayout", "nextLayout",
// "arrangeWindows" and "additional". "additional" maps the raw names of all other actions to their shortcuts. An action
// whose member is missing has no shortcut.
#pragma once

#include "commands/KovaShortcut.h"
#include "support/Decoded.h"

#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace kova {

struct KovaShortcutConfiguration {
    std::optional<KovaShortcut> previousLayout;
    std::optional<KovaShortcut> nextLayout;
    std::optional<KovaShortcut> arrangeWindows;
    std::optional<std::map<KovaShortcutAction, KovaShortcut>> additional;
    /// Stored entries of `additional` for actions that this version does not know, as JSON texts by name. They are
    /// written again, so that another version finds them.
    std::map<std::string, std::string> unknown;

    bool operator==(const KovaShortcutConfiguration&) const = default;

    /// The default shortcuts.
    static KovaShortcutConfiguration standard();

    /// Null if the action has no shortcut.
    const KovaShortcut* shortcut(KovaShortcutAction action) const;
    /// An absent shortcut removes the action's shortcut.
    void setShortcut(std::optional<KovaShortcut> shortcut, KovaShortcutAction action);
};

std::string encodeShortcutConfiguration(const KovaShortcutConfiguration& configuration);
/// Fails if any value is invalid. Entries of unknown actions are not decoded, so they cannot be invalid. Modifiers that
/// shortcuts do not use are dropped.
Decoded<KovaShortcutConfiguration> decodeShortcutConfiguration(std::string_view json);

} // namespace kova
