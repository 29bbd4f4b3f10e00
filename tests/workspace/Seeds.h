// Which seeds a random test runs: the usual ones from 1 on, or those that KOVA_RANDOM_SEED and KOVA_RANDOM_DAYS name.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>

namespace kova {

inline std::uint32_t numberFrom(const char* variable, std::uint32_t otherwise) {
    const char* text = std::getenv(variable);
    return text ? static_cast<std::uint32_t>(std::strtoul(text, nullptr, 10)) : otherwise;
}

/// Up to the first that fails.
template <class Run>
void forEachSeed(std::uint32_t usualCount, Run run) {
    const bool isOneSeed = std::getenv("KOVA_RANDOM_SEED") != nullptr;
    const auto first = numberFrom("KOVA_RANDOM_SEED", 1);
    const auto count = numberFrom("KOVA_RANDOM_DAYS", isOneSeed ? 1 : usualCount);
    for (std::uint32_t i = 0; i < count && !testing::Test::HasFailure(); ++i) run(first + i);
}

} // namespace kova
