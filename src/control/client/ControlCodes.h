// The numbers that both ends of the agent's socket agree on.
#pragma once

#include <cstddef>

namespace kova::controlCode {

// Given by the protocol itself.
inline constexpr int parseError = -32700;
inline constexpr int invalidRequest = -32600;
inline constexpr int methodNotFound = -32601;
inline constexpr int invalidParameters = -32602;
inline constexpr int internalError = -32603;
// Ours: the request was understood and not carried out.
inline constexpr int refused = 1;
inline constexpr int noPermission = 4;

} // namespace kova::controlCode

namespace kova {

/// Longest line that the agent reads, in bytes and without its line break.
inline constexpr std::size_t kLongestControlLine = 1024 * 1024;
/// Largest document of scenes and rules that is imported, in bytes; it comes in pieces.
inline constexpr std::size_t kLargestDocument = std::size_t{64} << 20;

} // namespace kova
