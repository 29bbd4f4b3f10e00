#include "platform/linux/Process.h"

#include <unistd.h>

#include <array>
#include <csignal>
#include <string_view>
#if defined(__GLIBC__)
#include <malloc.h>
#endif

namespace kova {

void prepareProcess() {
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN); // writing fails instead, as on a full disk
#if defined(__GLIBC__)
    mallopt(M_ARENA_MAX, 1);
#endif
}

std::string ownProgram() {
    std::array<char, 4096> buffer{};
    const ssize_t length = readlink("/proc/self/exe", buffer.data(), buffer.size());
    if (length <= 0) return {};
    std::string path(buffer.data(), static_cast<std::size_t>(length));
    constexpr std::string_view kReplaced = " (deleted)";
    if (path.ends_with(kReplaced)) path.resize(path.size() - kReplaced.size());
    return path;
}

bool isTerminal() {
    return isatty(STDERR_FILENO) == 1;
}

} // namespace kova
