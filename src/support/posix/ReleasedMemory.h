// Memory that a program needed for a while only.
#pragma once

namespace kova {

/// Gives free blocks back to the system, and the code of libraries, which is read again from their files where it runs.
/// No-op on systems that do so by themselves.
void releaseUnusedMemory();

} // namespace kova
