// Writes JSON as text without building a tree of values, which would allocate memory for every value. Used for what is
// sent often.
#pragma once

#include <nlohmann/json_fwd.hpp>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

namespace kova {

/// Adds the commas. The caller calls `name` before each value of an object, and ends each object and array.
class JsonText {
  public:
    void beginObject() { begin('{'); }
    void endObject() { text_ += '}'; }
    void beginArray() { begin('['); }
    void endArray() { text_ += ']'; }
    void name(std::string_view name);
    /// Bytes that are not UTF-8 become U+FFFD.
    void text(std::string_view value);
    /// Writes whole numbers without ".0".
    void number(double value);
    void integer(std::int64_t value);
    void boolean(bool value);
    void null();
    /// Writes any value.
    void tree(const nlohmann::json& value);

    std::size_t length() const { return text_.size(); }
    /// Removes everything after the first `length` bytes.
    void cutTo(std::size_t length) { text_.resize(length); }
    std::string take() { return std::move(text_); }

  private:
    void begin(char bracket);
    void separate();

    std::string text_;
};

} // namespace kova
