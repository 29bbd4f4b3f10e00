#include "support/JsonDecoding.h"

#include <cmath>

namespace kova {

namespace {

/// The part of the library's error text after `mark`: the reason without error names and numbers.
std::string after(std::string_view mark, std::string_view text) {
    const auto at = text.find(mark);
    const std::string_view reason = at == std::string_view::npos ? text : text.substr(at + mark.size());
    // The library quotes the last token, which may be as long as the document.
    constexpr std::size_t kLongestReason = 300;
    return reason.size() <= kLongestReason ? std::string(reason) : std::string(reason.substr(0, kLongestReason)) + "…";
}

/// Counts brackets before the text is parsed. The library could call a function for each bracket that it parses. But
/// then it searches all siblings of an object at the object's end, so that a list of many objects takes quadratic time.
bool isNestedDeeperThan(int levels, std::string_view text) {
    int depth = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (c == '"') {
            for (++i; i < text.size() && text[i] != '"'; ++i) {
                if (text[i] == '\\') ++i;
            }
        } else if (c == '[' || c == '{') {
            if (++depth > levels) return true;
        } else if (c == ']' || c == '}') {
            --depth;
        }
    }
    return false;
}

} // namespace

std::string shownKey(std::string_view key) {
    constexpr std::size_t kLongestKey = 100;
    if (key.size() <= kLongestKey) return std::string(key);
    std::size_t end = kLongestKey;
    while (end > 0 && (static_cast<unsigned char>(key[end]) & 0xC0) == 0x80) --end; // keep characters whole
    return std::string(key.substr(0, end)) + "…";
}

void JsonCursor::fail(const std::string& reason) const {
    throw DecodingError(path_, reason);
}

std::string JsonCursor::string() const {
    if (!value_->is_string()) fail("expected a string");
    return value_->get<std::string>();
}

bool JsonCursor::boolean() const {
    if (!value_->is_boolean()) fail("expected true or false");
    return value_->get<bool>();
}

double JsonCursor::number() const {
    if (!value_->is_number()) fail("expected a number");
    return value_->get<double>();
}

std::int64_t JsonCursor::integer() const {
    if (value_->is_number_unsigned()) {
        if (value_->get<std::uint64_t>() > static_cast<std::uint64_t>(INT64_MAX)) fail("integer out of range");
        return value_->get<std::int64_t>();
    }
    if (value_->is_number_integer()) return value_->get<std::int64_t>();
    if (!value_->is_number()) fail("expected an integer");
    const double number = value_->get<double>();
    if (std::trunc(number) != number) fail("expected an integer");
    // The library reads an integer below the smallest 64-bit integer as a double, which may be equal to that integer.
    if (number <= -9.2233720368547758e18 || number >= 9.2233720368547758e18) fail("integer out of range");
    return static_cast<std::int64_t>(number);
}

Uuid JsonCursor::uuid() const {
    const auto uuid = Uuid::parse(string());
    if (!uuid) fail("expected a UUID");
    return *uuid;
}

std::vector<JsonCursor> JsonCursor::elements() const {
    if (!value_->is_array()) fail("expected an array");
    std::vector<JsonCursor> out;
    out.reserve(value_->size());
    for (std::size_t i = 0; i < value_->size(); ++i)
        out.emplace_back((*value_)[i], path_ + "[" + std::to_string(i) + "]");
    return out;
}

std::vector<std::pair<std::string, JsonCursor>> JsonCursor::members() const {
    if (!value_->is_object()) fail("expected an object");
    std::vector<std::pair<std::string, JsonCursor>> out;
    out.reserve(value_->size());
    for (const auto& [key, member] : value_->items()) {
        out.emplace_back(key, JsonCursor(member, path_.empty() ? shownKey(key) : path_ + "." + shownKey(key)));
    }
    return out;
}

std::optional<JsonCursor> JsonCursor::optional(std::string_view key) const {
    if (!value_->is_object()) fail("expected an object");
    const auto found = value_->find(key);
    if (found == value_->end() || found->is_null()) return std::nullopt;
    const std::string name(key);
    return JsonCursor(*found, path_.empty() ? name : path_ + "." + name);
}

JsonCursor JsonCursor::required(std::string_view key) const {
    if (auto member = optional(key)) return *member;
    const std::string name(key);
    throw DecodingError(path_.empty() ? name : path_ + "." + name,
                        value_->contains(key) ? "must not be null" : "is missing");
}

std::pair<std::string, JsonCursor> JsonCursor::soleCase() const {
    auto all = members();
    if (all.size() != 1) fail("Invalid number of keys found, expected one.");
    return all.front();
}

DecodingError notJson(const nlohmann::json::exception& error) {
    if (const auto* syntax = dynamic_cast<const nlohmann::json::parse_error*>(&error)) {
        return {"", "not JSON at byte " + std::to_string(syntax->byte) + ": " + after(": ", error.what())};
    }
    return {"", "number out of range: " + after("parsing ", error.what())};
}

nlohmann::json parseJson(std::string_view text) {
    if (isNestedDeeperThan(kMaximumJsonDepth, text)) {
        throw DecodingError("", "nested deeper than " + std::to_string(kMaximumJsonDepth) + " levels");
    }
    try {
        return nlohmann::json::parse(text);
    } catch (const nlohmann::json::exception& error) {
        throw notJson(error);
    }
}

} // namespace kova
