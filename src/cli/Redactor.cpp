#include "cli/Redactor.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>

namespace kova::cli {

namespace {

using nlohmann::json;

/// Keys of texts that are not private.
constexpr auto kHarmless = std::to_array<std::string_view>({
    "accent",
    "accentColor",
    "accentColorID",
    "action",
    "activeSceneID",
    "anchorTargetID",
    "application",
    "applicationName",
    "axis",
    "claimedSlotIDs",
    "firstSteps",
    "handledRuleWindowIDs",
    "bundleIdentifier",
    "createdAt",
    "direction",
    "display",
    "displayClass",
    "displayID",
    "disposition",
    "id",
    "key",
    "kind",
    "layout",
    "layoutID",
    "modifiers",
    "permission",
    "rule",
    "selection",
    "slot",
    "slotID",
    "split",
    "stack",
    "targetID",
    "theme",
    "themeID",
    "tile",
    "updatedAt",
    "version",
    "window",
    "windowID",
    "shortcutsHeldByOthers",
});

/// Members of a session record that map ids of tiles to ids of windows, or the reverse.
constexpr auto kMapsOfIDs = std::to_array<std::string_view>({"anchors", "assigned", "stacks"});

bool isMapOfIDs(std::string_view key) {
    return std::find(kMapsOfIDs.begin(), kMapsOfIDs.end(), key) != kMapsOfIDs.end();
}

bool isPreferenceKey(std::string_view key) {
    return key.starts_with("KOVA.");
}

bool isHarmless(std::string_view key) {
    return isPreferenceKey(key) || isMapOfIDs(key) ||
           std::find(kHarmless.begin(), kHarmless.end(), key) != kHarmless.end();
}

} // namespace

std::string Redactor::wordFor(const std::string& text) {
    if (text.empty()) return text;
    std::string& word = words_[text];
    if (word.empty()) {
        std::array<char, 32> buffer{};
        std::snprintf(buffer.data(), buffer.size(), "text-%08x", static_cast<unsigned>(random_()));
        word = buffer.data();
    }
    return word;
}

json Redactor::applied(const json& record) {
    return applied(record, "");
}

json Redactor::applied(const json& value, std::string_view key) {
    if (value.is_string()) return isHarmless(key) ? value : json(wordFor(value.get<std::string>()));
    json out = value;
    if (value.is_object()) {
        for (auto& [name, member] : out.items()) member = applied(member, isMapOfIDs(key) ? key : name);
    } else if (value.is_array()) {
        // A preference that is a single text is an id or a choice that KOVA offers. Texts in a list may be private.
        for (json& element : out) element = applied(element, isPreferenceKey(key) ? "" : key);
    }
    return out;
}

} // namespace kova::cli
