// Writes JSON straight into text, for what is sent often: a tree of values needs an allocation for each of them.
#pragma once

#include <nlohmann/json_fwd.hpp>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

namespace kova {

/// Writes the commas. The caller writes a name before each value of an object, and ends what it begins.
class JsonText {
  public:
    void beginObject() { begin('{'); }
    void endObject() { text_ += '}'; }
    void beginArray() { begin('['); }
    void endArray() { text_ += ']'; }
    void name(std::string_view name);
    /// Bytes that are not UTF-8 become U+FFFD.
    void text(std::string_view value);
    /// Whole numbers without a fraction.
    void number(double value);
    void integer(std::int64_t value);
    void boolean(bool value);
    void null();
    void tree(const nlohmann::json& value);

    std::size_t length() const { return text_.size(); }
    /// Removes what was written after the text had that length.
    void cutTo(std::size_t length) { text_.resize(length); }
    std::string take() { return std::move(text_); }

  private:
    void begin(char bracket);
    void separate();

    std::string text_;
};

} // namespace kova
