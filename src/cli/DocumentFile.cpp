#include "cli/DocumentFile.h"

#include "support/Quoted.h"
#include "support/posix/AtomicFile.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <filesystem>

namespace kova::cli {

namespace {

namespace fs = std::filesystem;

FileProblem problem(const std::string& what, const std::string& path, int error) {
    return {"cannot " + what + " " + quoted(path) + ": " + std::strerror(error)};
}

/// True if more text may come. The pipe was opened without waiting for a writer, so while it has no text, this function
/// waits up to two seconds for the first writer.
bool waitForMore(int descriptor, bool hasWriter, bool hasText) {
    constexpr int kWriterTimeoutMilliseconds = 2000;
    constexpr int kPauseMilliseconds = 20;
    if (hasWriter) {
        pollfd readable{descriptor, POLLIN, 0};
        return poll(&readable, 1, -1) >= 0 || errno == EINTR;
    }
    if (hasText) return false;
    for (int waited = 0; waited < kWriterTimeoutMilliseconds; waited += kPauseMilliseconds) {
        // poll() reports nothing before the first writer, afterwards either text or the end of the text.
        pollfd readable{descriptor, POLLIN, 0};
        if (poll(&readable, 1, kPauseMilliseconds) > 0) return (readable.revents & POLLIN) != 0;
    }
    return false;
}

} // namespace

Result<std::string, FileProblem> readFile(const std::string& path, std::size_t mostBytes) {
    const bool isStandardInput = path == kStandardStream;
    const Descriptor file(isStandardInput ? fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 0)
                                          : open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (!file.isOpen()) return problem("read", path, errno);
    struct stat status {};
    const bool isPipe = !isStandardInput && fstat(file.number(), &status) == 0 && S_ISFIFO(status.st_mode);
    std::string text;
    std::array<char, 64 * 1024> piece;
    while (true) {
        const auto count = ::read(file.number(), piece.data(), piece.size());
        if (count == 0 && isPipe && waitForMore(file.number(), false, !text.empty())) continue;
        if (count == 0 && isPipe && text.empty()) return FileProblem{"no program writes to the pipe " + quoted(path)};
        if (count == 0) return text;
        if (count < 0 && errno == EINTR) continue;
        if (count < 0 && errno == EAGAIN && waitForMore(file.number(), true, false)) continue;
        if (count < 0) return problem("read", path, errno);
        text.append(piece.data(), static_cast<std::size_t>(count));
        if (text.size() > mostBytes) {
            return FileProblem{quoted(path) + " is larger than " + std::to_string(mostBytes >> 20) + " MiB"};
        }
    }
}

std::string documentPath(const std::string& path, std::string_view nameInFolder) {
    std::error_code error;
    fs::path target = fs::is_directory(path, error) ? fs::path(path) / nameInFolder : fs::path(path);
    const fs::path real = fs::canonical(target, error);
    return error || !fs::is_symlink(target, error) ? target.string() : real.string();
}

bool wouldOverwrite(const std::string& path) {
    struct stat status {};
    return stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode);
}

std::optional<FileProblem> replaceFile(const std::string& path, std::string_view text) {
    struct stat status {};
    const bool isThere = stat(path.c_str(), &status) == 0;
    if (isThere && !S_ISREG(status.st_mode)) {
        const Descriptor sink(open(path.c_str(), O_WRONLY | O_CLOEXEC));
        if (!sink.isOpen() || !writeAll(sink.number(), text)) return problem("write", path, errno);
        return std::nullopt;
    }
    FileReplacement how;
    if (isThere) how.exactMode = status.st_mode & 07777U;
    const int error = replaceFileAtomically(path, text, how);
    return error == 0 ? std::nullopt : std::optional(problem("write", path, error));
}

} // namespace kova::cli
