#include "support/posix/ReleasedMemory.h"

#if defined(__linux__)
#include <sys/mman.h>

#include <fstream>
#endif
#ifdef __GLIBC__
#include <malloc.h>
#endif

#include <charconv>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>

namespace kova {

namespace {

/// The first line of a mapping in smaps: "7f5c3000-7f5c5000 r-xp 00001000 08:01 1234   /usr/lib/libx.so".
struct MappingLine {
    MappedPages pages;
    std::string permissions, path;
};
/// Absent if the line does not have that form.
std::optional<MappingLine> mappingIn(const std::string& line) {
    std::size_t begin = 0, end = 0;
    const char* const last = line.data() + line.size();
    const auto first = std::from_chars(line.data(), last, begin, 16);
    if (first.ec != std::errc() || first.ptr == last || *first.ptr != '-') return std::nullopt;
    const auto second = std::from_chars(first.ptr + 1, last, end, 16);
    if (second.ec != std::errc() || second.ptr == last || *second.ptr != ' ' || end <= begin) return std::nullopt;
    MappingLine mapping{{begin, end - begin}, {}, {}};
    std::istringstream rest(std::string(second.ptr, last));
    std::string offset, device, inode;
    rest >> mapping.permissions >> offset >> device >> inode >> mapping.path;
    return mapping;
}

bool isUnwrittenFile(const MappingLine& mapping) {
    return mapping.permissions.size() == 4 && mapping.permissions[1] == '-' && mapping.permissions[3] == 'p' &&
           mapping.path.starts_with('/') && !mapping.path.starts_with("/dev/");
}

} // namespace

std::vector<MappedPages> unchangedFilePages(std::istream& smaps) {
    constexpr std::string_view kChangedPages = "Anonymous:";
    std::vector<MappedPages> found;
    std::optional<MappingLine> mapping;
    for (std::string line; std::getline(smaps, line);) {
        if (auto next = mappingIn(line)) {
            mapping = std::move(next);
        } else if (mapping && line.starts_with(kChangedPages)) {
            std::size_t kilobytes = 1;
            std::istringstream(line.substr(kChangedPages.size())) >> kilobytes;
            if (kilobytes == 0 && isUnwrittenFile(*mapping)) found.push_back(mapping->pages);
            mapping.reset();
        }
    }
    return found;
}

void releaseUnusedMemory() {
#ifdef __GLIBC__
    malloc_trim(0);
#endif
#if defined(__linux__)
    std::ifstream smaps("/proc/self/smaps");
    for (const MappedPages& pages : unchangedFilePages(smaps)) {
        // smaps gives an address of this process as a number.
        madvise(reinterpret_cast<void*>(pages.begin), pages.length, MADV_DONTNEED); // NOLINT
    }
#endif
}

} // namespace kova
