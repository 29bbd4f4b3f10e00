#include "platform/linux/Process.h"

#include <csignal>
#if defined(__GLIBC__)
#include <malloc.h>
#endif

namespace kova {

void prepareProcess() {
    std::signal(SIGPIPE, SIG_IGN);
#if defined(__GLIBC__)
    mallopt(M_ARENA_MAX, 1);
#endif
}

} // namespace kova
