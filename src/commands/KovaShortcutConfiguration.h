// Which action has which shortcut, and how that is stored: an object with the members "previousLayout", "nextLayout",
// "arrangeWindows" and "additional", the last one keyed by the raw names of the other actions. A missing member is an
// action without a shortcut.
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
    /// Entries of `additional` for actions that this version does not know, as JSON texts by name. They are kept, so
    /// that another version finds them.
    std::map<std::string, std::string> unknown;

    bool operator==(const KovaShortcutConfiguration&) const = default;

    /// The default shortcuts.
    static KovaShortcutConfiguration standard();

    /// Null when the action has none.
    const KovaShortcut* shortcut(KovaShortcutAction action) const;
    /// An absent shortcut removes the action's shortcut.
    void setShortcut(std::optional<KovaShortcut> shortcut, KovaShortcutAction action);
};

std::string encodeShortcutConfiguration(const KovaShortcutConfiguration& configuration);
/// One invalid value fails the whole configuration, except entries of unknown actions, which are not decoded. Modifiers
/// that shortcuts do not use are dropped.
Decoded<KovaShortcutConfiguration> decodeShortcutConfiguration(std::string_view json);

} // namespace kova
