#include "support/posix/ReleasedMemory.h"

#include <gtest/gtest.h>

#include <sys/mman.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>

namespace kova {
namespace {

TEST(ReleasedMemory, OnlyUnchangedPagesOfFilesAreReleased) {
    struct Case {
        const char *what, *line, *anonymousKilobytes;
        bool isFound;
    };
    const Case cases[] = {
        {"code", "1000-3000 r-xp 00001000 08:01 7                   /usr/lib/libx.so.1", "0", true},
        {"constants", "1000-3000 r--p 00000000 08:01 7                   /usr/lib/a folder/libx.so", "0", true},
        {"data that was relocated and then made read-only", "1000-3000 r--p 00001000 08:01 7          /usr/lib/libx.so",
         "4", false},
        {"data", "1000-3000 rw-p 00001000 08:01 7                   /usr/lib/libx.so", "0", false},
        {"shared with other processes", "1000-3000 r--s 00000000 08:01 7              /var/cache/fonts", "0", false},
        {"memory without a file", "1000-3000 r--p 00000000 00:00 0", "0", false},
        {"the stack", "1000-3000 rw-p 00000000 00:00 0                   [stack]", "8", false},
        {"pages of the kernel", "1000-3000 r-xp 00000000 00:00 0                   [vdso]", "0", false},
        {"pages of a device", "1000-3000 r--p 00000000 00:05 7                   /dev/dri/card0", "0", false}};
    for (const Case& each : cases) {
        std::istringstream smaps(std::string(each.line) + "\nSize:   8 kB\nRss:   8 kB\nAnonymous:      " +
                                 each.anonymousKilobytes + " kB\nVmFlags: rd mr mw me\n");
        const std::vector<MappedPages> none, found{{0x1000, 0x2000}};
        EXPECT_EQ(unchangedFilePages(smaps), each.isFound ? found : none) << each.what;
    }
}

#if defined(__linux__)
/// Kilobytes of the file's mappings that are in memory.
int residentKilobytes(const std::string& path) {
    std::ifstream smaps("/proc/self/smaps");
    bool isOfFile = false;
    int sum = 0;
    for (std::string line; std::getline(smaps, line);) {
        if (line.find(" kB") == std::string::npos && line.find('-') != std::string::npos)
            isOfFile = line.ends_with(path);
        if (isOfFile && line.starts_with("Rss:")) sum += std::stoi(line.substr(4));
    }
    return sum;
}

TEST(ReleasedMemory, ReleasedPagesAreReadAgainFromTheFileAndWrittenPagesAreKept) {
    std::string path = ::testing::TempDir() + "kova-mapped-XXXXXX";
    const int file = mkstemp(path.data());
    ASSERT_GE(file, 0);
    const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    const std::string text(4 * page, 'f');
    ASSERT_EQ(write(file, text.data(), text.size()), static_cast<ssize_t>(text.size()));
    const auto map = [&](int protection) {
        return static_cast<char*>(mmap(nullptr, text.size(), protection, MAP_PRIVATE, file, 0));
    };
    char *const read = map(PROT_READ), *const written = map(PROT_READ | PROT_WRITE);
    ASSERT_NE(read, MAP_FAILED);
    ASSERT_NE(written, MAP_FAILED);
    EXPECT_EQ(std::string(read, text.size()), text);
    written[0] = 'w';
    mprotect(written, text.size(), PROT_READ);
    ASSERT_GE(residentKilobytes(path), static_cast<int>(5 * page / 1024));

    releaseUnusedMemory();
    EXPECT_LE(residentKilobytes(path), static_cast<int>(4 * page / 1024)) << "the unwritten mapping was not released";
    EXPECT_EQ(std::string(read, text.size()), text);
    EXPECT_EQ(written[0], 'w');
    EXPECT_EQ(written[1], 'f');
    munmap(read, text.size());
    munmap(written, text.size());
    close(file);
    unlink(path.c_str());
}
#endif

} // namespace
} // namespace kova
