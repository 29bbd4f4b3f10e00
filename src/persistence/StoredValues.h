// Reads preferences and reports unusable values to the store. An unusable value is treated as absent, but the store
// keeps a copy of it.
#pragma once

#include "persistence/PreferencesStore.h"
#include "support/Decoded.h"

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>

namespace kova {

/// The stored value of type `T`; absent if there is none. A value of another type is reported to the store and counts
/// as absent.
template <class T>
std::optional<T> storedValue(PreferencesStore& store, std::string_view key, const char* expected) {
    auto stored = store.value(key);
    if (!stored) return std::nullopt;
    if (auto* value = std::get_if<T>(&*stored)) return std::move(*value);
    store.noteUnusable(key, expected);
    return std::nullopt;
}

inline std::optional<bool> storedBoolean(PreferencesStore& store, std::string_view key) {
    return storedValue<bool>(store, key, "expected true or false");
}

inline std::optional<std::string> storedString(PreferencesStore& store, std::string_view key) {
    return storedValue<std::string>(store, key, "expected a text");
}

/// The stored record; absent if there is none. A record that `decode` refuses is reported to the store and counts as
/// absent.
template <class Record, class Decode>
std::optional<Record> storedRecord(PreferencesStore& store, std::string_view key, Decode decode) {
    const auto data = storedValue<PreferenceData>(store, key, "expected an object");
    if (!data) return std::nullopt;
    Decoded<Record> decoded = decode(std::string_view(data->json));
    if (const auto* error = std::get_if<DecodingError>(&decoded)) {
        store.noteUnusable(key, error->what());
        return std::nullopt;
    }
    return std::get<Record>(std::move(decoded));
}

} // namespace kova
