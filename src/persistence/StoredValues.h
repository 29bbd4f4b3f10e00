// Reads preferences and reports unusable values to the store, so that they are not mistaken for absent ones.
#pragma once

#include "persistence/PreferencesStore.h"
#include "support/Decoded.h"

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>

namespace kova {

/// The stored value of type `T`; absent if there is none, or one of another type, which is reported to the store.
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

/// The stored record; absent if there is none, or one that `decode` refuses, which is reported to the store.
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
