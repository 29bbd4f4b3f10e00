// Memory that a program needed for a while only.
#pragma once

namespace kova {

/// Gives free blocks back to the system. No-op on systems that do so by themselves.
void releaseUnusedMemory();

} // namespace kova
