// Memory that a program needed for a while only.
#pragma once

#include <cstddef>
#include <istream>
#include <vector>

namespace kova {

/// Gives back free blocks of the heap and the pages of program files, such as libraries, that are mapped unchanged.
/// Those pages stay in the system's cache of files and are mapped again, without reading a disk, when they are used:
/// for about a millisecond afterwards the program is slower. Takes some milliseconds. No-op on systems that give
/// memory back by themselves.
void releaseUnusedMemory();

/// A part of this process's address space.
struct MappedPages {
    std::size_t begin = 0, length = 0; // bytes
    bool operator==(const MappedPages&) const = default;
};
/// From the text of /proc/PID/smaps the mappings of files that can be read again from the file: private, not writable,
/// without a page of their own. Data of libraries that was relocated and then made read-only has such pages.
std::vector<MappedPages> unchangedFilePages(std::istream& smaps);

} // namespace kova
