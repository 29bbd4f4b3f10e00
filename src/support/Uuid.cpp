#include "support/Uuid.h"

#include <cstdint>
#include <random>

namespace kova {

namespace {

constexpr std::string_view kUuidPattern = "xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx";
constexpr std::string_view kDigits = "0123456789ABCDEF";

/// Queries the system's random source once per thread instead of once per UUID, since a query is slow on some machines.
std::mt19937 seededGenerator() {
    std::random_device source;
    std::seed_seq seed{source(), source(), source(), source(), source(), source(), source(), source()};
    return std::mt19937(seed);
}

} // namespace

Uuid Uuid::random() {
    static thread_local std::mt19937 source = seededGenerator();
    std::string text(kUuidPattern);
    std::uint_fast32_t bits = 0;
    int left = 0;
    for (char& c : text) {
        if (c != 'x') continue;
        if (left == 0) {
            bits = source();
            left = 8;
        }
        c = kDigits[bits % 16];
        bits /= 16;
        --left;
    }
    constexpr std::string_view kVariants = "89AB";
    text[14] = '4';
    text[19] = kVariants[kDigits.find(text[19]) % kVariants.size()];
    return Uuid(std::move(text));
}

std::optional<Uuid> Uuid::parse(std::string_view text) {
    if (text.size() != kUuidPattern.size()) return std::nullopt;
    std::string upper;
    upper.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i] >= 'a' && text[i] <= 'f' ? static_cast<char>(text[i] - 'a' + 'A') : text[i];
        const bool fits = kUuidPattern[i] == 'x' ? kDigits.find(c) != std::string_view::npos : c == kUuidPattern[i];
        if (!fits) return std::nullopt;
        upper.push_back(c);
    }
    return Uuid(std::move(upper));
}

} // namespace kova
