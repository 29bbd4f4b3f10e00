#include "control/AgentClaim.h"

#include "support/Quoted.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <charconv>
#include <cstring>
#include <string_view>

namespace kova {

namespace {

std::string because(int error) {
    return std::string(": ") + std::strerror(error);
}

/// Creates the folder of the socket if necessary. If the folder is KOVA's own, lets only this user enter it. Returns
/// the error message on failure.
std::optional<std::string> prepareFolder(const ControlSocketPlace& place) {
    const std::string folder = place.folder();
    if (mkdir(folder.c_str(), S_IRWXU) != 0 && errno != EEXIST)
        return "Cannot make the folder " + folder + because(errno);
    if (!place.isFolderOurs) return std::nullopt;

    struct stat found {};
    if (lstat(folder.c_str(), &found) != 0) return "Cannot inspect the folder " + folder + because(errno);
    if (!S_ISDIR(found.st_mode)) return folder + " is not a folder";
    if (found.st_uid != geteuid()) return "The folder " + folder + " belongs to another user";
    if ((found.st_mode & 07777) != S_IRWXU && chmod(folder.c_str(), S_IRWXU) != 0) {
        return "Cannot withdraw other users' access to the folder " + folder + because(errno);
    }
    return std::nullopt;
}

/// The process id of the agent that holds the lock; absent if it cannot be read.
std::optional<pid_t> holderOf(int lock) {
    // That agent writes its process id shortly after it has taken the lock, so reading is tried several times.
    for (int attempt = 0; attempt < 20; ++attempt) {
        std::array<char, 16> text{};
        const auto length = pread(lock, text.data(), text.size(), 0);
        pid_t holder = 0;
        if (length > 0 && std::from_chars(text.data(), text.data() + length, holder).ec == std::errc{}) return holder;
        usleep(5'000);
    }
    return std::nullopt;
}

bool writeHolder(int lock) {
    const std::string text = std::to_string(getpid()) + "\n";
    return ftruncate(lock, 0) == 0 && pwrite(lock, text.data(), text.size(), 0) == static_cast<ssize_t>(text.size());
}

} // namespace

std::variant<AgentClaim, AgentClaimRefusal> AgentClaim::take(const ControlSocketPlace& place) {
    const auto refuse = [](std::string message, std::optional<pid_t> holder = std::nullopt) {
        return AgentClaimRefusal{holder, std::move(message)};
    };
    if (!controlSocketAddress(place.path)) {
        return refuse("No socket can be made at " + quoted(place.path) + ": the path is empty or too long");
    }
    if (auto problem = prepareFolder(place)) return refuse(*problem);

    const std::string lockPath = place.path + ".lock";
    const int lock = open(lockPath.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, S_IRUSR | S_IWUSR);
    if (lock < 0) return refuse("Cannot open " + lockPath + because(errno));
    AgentClaim claim(place.path, lock);
    if (flock(lock, LOCK_EX | LOCK_NB) != 0) {
        if (errno != EWOULDBLOCK) return refuse("Cannot lock " + lockPath + because(errno));
        const auto holder = holderOf(lock);
        const std::string process = holder ? " (process " + std::to_string(*holder) + ")" : "";
        return refuse("Another KOVA agent" + process + " already manages this session", holder);
    }
    // A full disk is no reason to fail: the lock is valid without the process id, which only a second agent's error
    // message needs.
    const auto isFull = [](int error) { return error == EFBIG || error == ENOSPC || error == EDQUOT; };
    if (!writeHolder(lock) && !isFull(errno)) return refuse("Cannot write to " + lockPath + because(errno));
    return claim;
}

AgentClaim::~AgentClaim() {
    // The lock file stays: removing it would let two agents lock two files of the same name.
    if (lock_ >= 0) close(lock_);
}

} // namespace kova
