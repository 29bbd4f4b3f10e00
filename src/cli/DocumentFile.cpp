#include "cli/DocumentFile.h"

#include "cli/Streams.h"

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

class Descriptor {
  public:
    explicit Descriptor(int number) : number_(number) {}
    ~Descriptor() {
        if (number_ >= 0) close(number_);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    int number() const { return number_; }
    bool isOpen() const { return number_ >= 0; }

  private:
    int number_;
};

FileProblem problem(const std::string& what, const std::string& path, int error) {
    return {"cannot " + what + " “" + path + "”: " + std::strerror(error)};
}

/// A pipe is opened without waiting for the other end; whether there is one is told by reading. True while more may
/// come.
bool waitForMore(int descriptor, bool hasWriter, bool hasText) {
    constexpr int kPatienceWithWriterMilliseconds = 2000;
    constexpr int kPauseMilliseconds = 20;
    if (hasWriter) {
        pollfd readable{descriptor, POLLIN, 0};
        return poll(&readable, 1, -1) >= 0 || errno == EINTR;
    }
    if (hasText) return false;
    for (int waited = 0; waited < kPatienceWithWriterMilliseconds; waited += kPauseMilliseconds) {
        // Before the first writer has come, nothing is reported at all; afterwards either text or that it has gone.
        pollfd readable{descriptor, POLLIN, 0};
        if (poll(&readable, 1, kPauseMilliseconds) > 0) return (readable.revents & POLLIN) != 0;
    }
    return false;
}

/// The folder's new entry lasts only once the folder is on disk too. The file is whole either way.
void syncFolder(const fs::path& folder) {
    const Descriptor opened(open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (opened.isOpen()) fsync(opened.number());
}

} // namespace

std::variant<std::string, FileProblem> readFile(const std::string& path, std::size_t mostBytes) {
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
        if (count == 0 && isPipe && text.empty()) return FileProblem{"no program writes to the pipe “" + path + "”"};
        if (count == 0) return text;
        if (count < 0 && errno == EINTR) continue;
        if (count < 0 && errno == EAGAIN && waitForMore(file.number(), true, false)) continue;
        if (count < 0) return problem("read", path, errno);
        text.append(piece.data(), static_cast<std::size_t>(count));
        if (text.size() > mostBytes) {
            return FileProblem{"“" + path + "” is larger than " + std::to_string(mostBytes >> 20) + " MiB"};
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
        if (!sink.isOpen() || !write(sink.number(), text)) return problem("write", path, errno);
        return std::nullopt;
    }
    const fs::path target(path);
    const fs::path draft =
        target.parent_path() / ("." + target.filename().string() + ".draft-" + std::to_string(getpid()));
    unlink(draft.c_str()); // of a process that was killed
    int error = 0;
    {
        const Descriptor file(open(draft.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666)); // less the umask
        if (!file.isOpen()) return problem("write", path, errno);
        const bool isKept = !isThere || fchmod(file.number(), status.st_mode & 07777U) == 0;
        if (!isKept || !write(file.number(), text) || fsync(file.number()) != 0) error = errno;
    }
    if (error == 0 && rename(draft.c_str(), path.c_str()) != 0) error = errno;
    if (error != 0) {
        unlink(draft.c_str());
        return problem("write", path, error);
    }
    syncFolder(target.parent_path());
    return std::nullopt;
}

} // namespace kova::cli
