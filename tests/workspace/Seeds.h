// The seeds of a random test start at 1. KOVA_RANDOM_SEED sets another first seed, KOVA_RANDOM_DAYS the number of
// seeds.
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
inline constexpr bool kHasAddressSanitizer = true;
#elif defined(__has_feature)
inline constexpr bool kHasAddressSanitizer = __has_feature(address_sanitizer);
#else
inline constexpr bool kHasAddressSanitizer = false;
#endif

/// Calls `run` with each seed until a test has failed. The address sanitizer makes a seed several times slower, so with
/// it only a quarter of `usualCount` seeds is used.
template <class Run>
void forEachSeed(std::uint32_t usualCount, Run run) {
    const bool isOneSeed = std::getenv("KOVA_RANDOM_SEED") != nullptr;
    const auto first = numberFrom("KOVA_RANDOM_SEED", 1);
    const auto count = numberFrom("KOVA_RANDOM_DAYS", isOneSeed ? 1 : usualCount / (kHasAddressSanitizer ? 4 : 1));
    ASSERT_GT(count, 0u) << "no seed was tried";
    for (std::uint32_t i = 0; i < count && !testing::Test::HasFailure(); ++i) run(first + i);
}

} // namespace kova
