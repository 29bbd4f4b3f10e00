#include "control/JsonText.h"

#include "control/ControlRecords.h"
#include "control/JsonRpc.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <charconv>

namespace kova {

namespace {

/// True if the text is ASCII and needs no escapes.
bool isPlain(std::string_view text) {
    return std::ranges::all_of(text, [](char c) { return c >= ' ' && c < '\x7f' && c != '"' && c != '\\'; });
}

} // namespace

void JsonText::separate() {
    if (text_.empty()) return;
    const char last = text_.back();
    if (last != '{' && last != '[' && last != ':') text_ += ',';
}

void JsonText::begin(char bracket) {
    separate();
    text_ += bracket;
}

void JsonText::name(std::string_view name) {
    text(name);
    text_ += ':';
}

void JsonText::text(std::string_view value) {
    if (!isPlain(value)) return tree(value);
    separate();
    text_ += '"';
    text_ += value;
    text_ += '"';
}

void JsonText::number(double value) {
    const auto whole = controlRecord::wholeNumber(value);
    whole ? integer(*whole) : tree(value);
}

void JsonText::integer(std::int64_t value) {
    separate();
    std::array<char, 24> digits; // more than any number of 64 bits has
    const auto end = std::to_chars(digits.begin(), digits.end(), value).ptr;
    text_.append(digits.begin(), end);
}

void JsonText::boolean(bool value) {
    separate();
    text_ += value ? "true" : "false";
}

void JsonText::null() {
    separate();
    text_ += "null";
}

void JsonText::tree(const nlohmann::json& value) {
    separate();
    text_ += jsonrpc::line(value);
}

} // namespace kova
