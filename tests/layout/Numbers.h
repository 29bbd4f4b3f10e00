// Numbers that are not finite, for tests of invalid input.
#pragma once

#include <limits>

namespace kova {

inline constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
inline constexpr double kInfinity = std::numeric_limits<double>::infinity();

} // namespace kova
