#include "support/Uuid.h"

#include <array>
#include <cstdint>
#include <random>

namespace kova {

namespace {

constexpr std::string_view kPattern = "xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx";
constexpr std::string_view kDigits = "0123456789ABCDEF";

} // namespace

Uuid Uuid::random() {
    std::random_device source;
    std::string text(kPattern);
    for (char& c : text) {
        if (c == 'x') c = kDigits[source() % 16];
    }
    text[14] = '4';                       // version
    text[19] = kDigits[8 + source() % 4]; // variant
    return Uuid(std::move(text));
}

std::optional<Uuid> Uuid::parse(std::string_view text) {
    if (text.size() != kPattern.size()) return std::nullopt;
    std::string upper;
    upper.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i] >= 'a' && text[i] <= 'f' ? static_cast<char>(text[i] - 'a' + 'A') : text[i];
        const bool fits = kPattern[i] == 'x' ? kDigits.find(c) != std::string_view::npos : c == kPattern[i];
        if (!fits) return std::nullopt;
        upper.push_back(c);
    }
    return Uuid(std::move(upper));
}

} // namespace kova
