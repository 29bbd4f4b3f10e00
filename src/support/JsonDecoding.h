// Reading JSON with errors that name the place: `scenes[2].displays[0].layoutID: expected a string`.
// Unknown keys are ignored. Null counts as absent for an optional field, and is an error for a required field. The
// number 1.0 is an integer.
#pragma once

#include "support/Decoded.h"
#include "support/Uuid.h"

#include <nlohmann/json.hpp>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kova {

/// A place in a JSON document. Its calls throw `DecodingError`; `decodeJson` turns that into a value.
class JsonCursor {
  public:
    JsonCursor(const nlohmann::json& value, std::string path) : value_(&value), path_(std::move(path)) {}

    const nlohmann::json& value() const { return *value_; }
    const std::string& path() const { return path_; }
    [[noreturn]] void fail(const std::string& reason) const;

    std::string string() const;
    bool boolean() const;
    double number() const;
    std::int64_t integer() const;
    Uuid uuid() const;
    /// Elements of an array, in order.
    std::vector<JsonCursor> elements() const;
    /// Members of an object, in key order.
    std::vector<std::pair<std::string, JsonCursor>> members() const;
    JsonCursor required(std::string_view key) const;
    std::optional<JsonCursor> optional(std::string_view key) const;
    /// Reads an enumeration with a payload: an object with one member, whose key is the case and whose value is the
    /// payload. Any other number of members fails with "Invalid number of keys found, expected one.".
    std::pair<std::string, JsonCursor> soleCase() const;

  private:
    const nlohmann::json* value_;
    std::string path_;
};

/// A key as shown in errors. A long key is cut, since it is part of every path below it.
std::string shownKey(std::string_view key);

/// Documents with more nested arrays and objects are refused.
inline constexpr int kMaximumJsonDepth = 64;
/// The library's parse error as a `DecodingError` with a text of limited length.
DecodingError notJson(const nlohmann::json::exception& error);

/// Parses text of limited nesting depth. For text that is not JSON the error says at which byte, counted from 1.
nlohmann::json parseJson(std::string_view text);

/// Parses the text and passes the document to `decode`, which may throw `DecodingError`.
template <class Decode>
auto decodeJson(std::string_view text, Decode decode) -> Decoded<decltype(decode(std::declval<JsonCursor>()))> {
    try {
        const nlohmann::json document = parseJson(text);
        return decode(JsonCursor(document, ""));
    } catch (const DecodingError& error) {
        return error;
    }
}

} // namespace kova
