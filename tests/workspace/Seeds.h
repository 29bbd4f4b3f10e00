// The seeds of a random test. KOVA_RANDOM_SEED gives the first seed (else 1), KOVA_RANDOM_DAYS the number of seeds.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>

namespace kova {

inline std::uint32_t numberFrom(const char* variable, std::uint32_t otherwise) {
    const char* text = std::getenv(variable);
    return text ? static_cast<std::uint32_t>(std::strtoul(text, nullptr, 10)) : otherwise;
}

#if defined(__SANITIZE_ADDRESS__)
inline constexpr bool kIsSlowed = true;
#elif defined(__has_feature)
inline constexpr bool kIsSlowed = __has_feature(address_sanitizer);
#else
inline constexpr bool kIsSlowed = false;
#endif

/// Runs all seeds up to the first failure; with the address sanitizer, which makes a seed several times slower, only a
/// quarter of `usualCount` seeds.
template <class Run>
void forEachSeed(std::uint32_t usualCount, Run run) {
    const bool isOneSeed = std::getenv("KOVA_RANDOM_SEED") != nullptr;
    const auto first = numberFrom("KOVA_RANDOM_SEED", 1);
    const auto count = numberFrom("KOVA_RANDOM_DAYS", isOneSeed ? 1 : usualCount / (kIsSlowed ? 4 : 1));
    for (std::uint32_t i = 0; i < count && !testing::Test::HasFailure(); ++i) run(first + i);
}

} // namespace kova
