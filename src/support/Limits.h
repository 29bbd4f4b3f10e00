// Limits and sizes that several modules share.
#pragma once

namespace kova {

inline constexpr double kDefaultTileInset = 5;   // points
inline constexpr double kLargestTileInset = 100; // points
inline constexpr double kFooterHeight = 28;      // points under every tile, for its footer

} // namespace kova
