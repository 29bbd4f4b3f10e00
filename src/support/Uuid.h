// Random (version 4) UUIDs, compared without regard to case and written in upper case.
#pragma once

#include <compare>
#include <optional>
#include <string>
#include <string_view>

namespace kova {

class Uuid {
  public:
    /// A new random UUID.
    static Uuid random();
    /// From the form 8-4-4-4-12 of hexadecimal digits in either case; absent for anything else.
    static std::optional<Uuid> parse(std::string_view text);

    const std::string& string() const { return text_; }
    auto operator<=>(const Uuid&) const = default;

  private:
    explicit Uuid(std::string text) : text_(std::move(text)) {}
    std::string text_;
};

} // namespace kova
