#include "support/JsonDecoding.h"

#include <cmath>

namespace kova {

namespace {

constexpr int kMaximumDepth = 64;

/// The library's reason without what it puts before it: names and numbers of its own.
std::string after(std::string_view mark, std::string_view text) {
    const auto at = text.find(mark);
    return std::string(at == std::string_view::npos ? text : text.substr(at + mark.size()));
}

} // namespace

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
    if (number < -9.2233720368547758e18 || number >= 9.2233720368547758e18) fail("integer out of range");
    return static_cast<std::int64_t>(number);
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
        out.emplace_back(key, JsonCursor(member, path_.empty() ? key : path_ + "." + key));
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

nlohmann::json parseJson(std::string_view text) {
    const auto limitDepth = [](int depth, nlohmann::json::parse_event_t, const nlohmann::json&) {
        if (depth > kMaximumDepth)
            throw DecodingError("", "nested deeper than " + std::to_string(kMaximumDepth) + " levels");
        return true;
    };
    try {
        return nlohmann::json::parse(text, limitDepth);
    } catch (const nlohmann::json::parse_error& error) {
        throw DecodingError("", "not JSON at byte " + std::to_string(error.byte) + ": " + after(": ", error.what()));
    } catch (const nlohmann::json::out_of_range& error) {
        throw DecodingError("", "number out of range: " + after("parsing ", error.what()));
    }
}

} // namespace kova
