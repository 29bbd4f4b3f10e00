#include "commands/KovaShortcutConfiguration.h"

#include "support/JsonDecoding.h"

#include <limits>
#include <utility>

namespace kova {

namespace {

using nlohmann::json;
using Field = std::optional<KovaShortcut> KovaShortcutConfiguration::*;

/// The member that holds the action's shortcut; null for actions whose shortcuts are in `additional`.
Field fieldOf(KovaShortcutAction action) {
    switch (action) {
    case KovaShortcutAction::previousLayout:
        return &KovaShortcutConfiguration::previousLayout;
    case KovaShortcutAction::nextLayout:
        return &KovaShortcutConfiguration::nextLayout;
    case KovaShortcutAction::arrangeWindows:
        return &KovaShortcutConfiguration::arrangeWindows;
    default:
        return nullptr;
    }
}

json encode(const KovaShortcut& shortcut) {
    return {{"keyCode", shortcut.keyCode},
            {"modifierFlagsRawValue", shortcut.modifierFlagsRawValue},
            {"keyLabel", shortcut.keyLabel}};
}

KovaShortcut decodeShortcut(const JsonCursor& at) {
    const JsonCursor keyCode = at.required("keyCode"), modifiers = at.required("modifierFlagsRawValue");
    const auto code = keyCode.integer();
    if (code < 0 || code > std::numeric_limits<std::uint16_t>::max()) keyCode.fail("expected a key code, 0 to 65535");
    const auto flags = modifiers.integer();
    if (flags < 0) modifiers.fail("must not be negative");
    return {static_cast<std::uint16_t>(code), static_cast<std::uint64_t>(flags) & modifierFlag::ofShortcuts,
            at.required("keyLabel").string()};
}

std::optional<KovaShortcut> decodeOptional(const JsonCursor& at, std::string_view key) {
    const auto member = at.optional(key);
    return member ? std::optional(decodeShortcut(*member)) : std::nullopt;
}

} // namespace

KovaShortcutConfiguration KovaShortcutConfiguration::standard() {
    using enum KovaShortcutAction;
    constexpr std::uint64_t kFocus = modifierFlag::control | modifierFlag::option;
    constexpr std::uint64_t kMove = kFocus | modifierFlag::shift;
    KovaShortcutConfiguration configuration;
    configuration.previousLayout = {123, kFocus, "←"};
    configuration.nextLayout = {124, kFocus, "→"};
    configuration.arrangeWindows = {0, kFocus, "A"};
    configuration.additional = {
        {undo, {6, kFocus, "Z"}},       {focusLeft, {4, kFocus, "H"}},   {focusDown, {38, kFocus, "J"}},
        {focusUp, {40, kFocus, "K"}},   {focusRight, {37, kFocus, "L"}}, {moveLeft, {4, kMove, "H"}},
        {moveDown, {38, kMove, "J"}},   {moveUp, {40, kMove, "K"}},      {moveRight, {37, kMove, "L"}},
        {focusZoom, {36, kFocus, "↩"}}, {cycleStack, {48, kFocus, "⇥"}}};
    return configuration;
}

const KovaShortcut* KovaShortcutConfiguration::shortcut(KovaShortcutAction action) const {
    if (const Field field = fieldOf(action)) return this->*field ? &*(this->*field) : nullptr;
    if (!additional) return nullptr;
    const auto found = additional->find(action);
    return found == additional->end() ? nullptr : &found->second;
}

void KovaShortcutConfiguration::setShortcut(std::optional<KovaShortcut> shortcut, KovaShortcutAction action) {
    if (const Field field = fieldOf(action)) {
        this->*field = std::move(shortcut);
    } else if (shortcut) {
        if (!additional) additional.emplace();
        additional->insert_or_assign(action, *std::move(shortcut));
    } else if (additional) {
        additional->erase(action);
    }
}

std::string encodeShortcutConfiguration(const KovaShortcutConfiguration& configuration) {
    json out = json::object();
    for (const auto action : kShortcutActions) {
        const Field field = fieldOf(action);
        if (field && configuration.*field) out[std::string(rawValue(action))] = encode(*(configuration.*field));
    }
    if (configuration.additional || !configuration.unknown.empty()) {
        json& additional = out["additional"] = json::object();
        for (const auto& [name, text] : configuration.unknown) {
            additional[name] = json::parse(text, nullptr, false);
        }
        if (configuration.additional)
            for (const auto& [action, shortcut] : *configuration.additional) {
                additional[std::string(rawValue(action))] = encode(shortcut);
            }
    }
    return out.dump(-1, ' ', false, json::error_handler_t::replace);
}

Decoded<KovaShortcutConfiguration> decodeShortcutConfiguration(std::string_view text) {
    return decodeJson(text, [](const JsonCursor& at) {
        KovaShortcutConfiguration configuration;
        configuration.previousLayout = decodeOptional(at, "previousLayout");
        configuration.nextLayout = decodeOptional(at, "nextLayout");
        configuration.arrangeWindows = decodeOptional(at, "arrangeWindows");
        if (const auto additional = at.optional("additional")) {
            configuration.additional.emplace();
            for (const auto& [name, member] : additional->members()) {
                const auto action = shortcutActionFrom(name);
                if (action) {
                    configuration.additional->emplace(*action, decodeShortcut(member));
                } else {
                    configuration.unknown.emplace(name, member.value().dump());
                }
            }
        }
        return configuration;
    });
}

} // namespace kova
