// Limits that the command line, the control socket and the workspace share.
#pragma once

namespace kova {

inline constexpr double kLargestTileInset = 100; // points

} // namespace kova
