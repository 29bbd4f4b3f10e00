// Constants that both ends of the agent's socket use.
#pragma once

#include <cstddef>

namespace kova::controlCode {

// Defined by JSON-RPC.
inline constexpr int parseError = -32700;
inline constexpr int invalidRequest = -32600;
inline constexpr int methodNotFound = -32601;
inline constexpr int invalidParameters = -32602;
inline constexpr int internalError = -32603;
// Defined by KOVA: the request was understood but not carried out.
inline constexpr int refused = 1;
inline constexpr int noPermission = 4;

} // namespace kova::controlCode

namespace kova {

/// The longest line that the agent reads, in bytes without the line break.
inline constexpr std::size_t kLongestControlLine = 1024 * 1024;
/// The largest document of scenes and rules that can be imported, in bytes. Clients send documents in pieces.
inline constexpr std::size_t kLargestDocument = std::size_t{64} << 20;

} // namespace kova
