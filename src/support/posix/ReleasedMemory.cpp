#include "support/posix/ReleasedMemory.h"

#ifdef __GLIBC__
#include <link.h>
#include <malloc.h>
#include <sys/mman.h>

#include <cstdint>
#endif

namespace kova {

#ifdef __GLIBC__
namespace {

/// Pages of code are never written to, so that dropping them loses nothing. Other parts of a library hold relocations.
int dropCode(dl_phdr_info* library, std::size_t, void*) {
    if (!library->dlpi_name || *library->dlpi_name != '/') return 0; // the program itself, and code of the kernel
    constexpr std::uintptr_t kPage = 4096;
    for (int i = 0; i < library->dlpi_phnum; ++i) {
        const auto& part = library->dlpi_phdr[i];
        if (part.p_type != PT_LOAD || (part.p_flags & (PF_X | PF_W)) != PF_X) continue;
        const std::uintptr_t begin = (library->dlpi_addr + part.p_vaddr + kPage - 1) & ~(kPage - 1);
        const std::uintptr_t end = (library->dlpi_addr + part.p_vaddr + part.p_memsz) & ~(kPage - 1);
        if (begin < end) madvise(reinterpret_cast<void*>(begin), end - begin, MADV_DONTNEED);
    }
    return 0;
}

} // namespace
#endif

void releaseUnusedMemory() {
#ifdef __GLIBC__
    malloc_trim(0);
    dl_iterate_phdr(dropCode, nullptr);
#endif
}

} // namespace kova
