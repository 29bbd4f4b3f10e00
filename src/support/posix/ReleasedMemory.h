// Returns unused memory of a program to the system.
#pragma once

#include <cstddef>
#include <istream>
#include <vector>

namespace kova {

/// Releases free blocks of the heap and unchanged pages of mapped files, such as libraries. Those pages stay in the
/// system's file cache and are mapped again when they are used, without reading a disk: for about a millisecond
/// afterwards the program is slower. Takes some milliseconds. No-op on systems that reclaim such memory themselves.
void releaseUnusedMemory();

/// A part of this process's address space.
struct MappedPages {
    std::size_t begin = 0, length = 0; // bytes
    bool operator==(const MappedPages&) const = default;
};
/// Finds in the text of /proc/PID/smaps the mappings that can be read again from their file: private, not writable, and
/// without pages that differ from the file. Relocated data of libraries differs, although it is not writable.
std::vector<MappedPages> unchangedFilePages(std::istream& smaps);

} // namespace kova
