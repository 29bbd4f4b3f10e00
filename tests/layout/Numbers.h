// Numbers that are not valid lengths.
#pragma once

#include <limits>

namespace kova {

inline constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
inline constexpr double kInfinity = std::numeric_limits<double>::infinity();

} // namespace kova
