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

/// Absent when the folder exists and only this user can write to it.
std::optional<std::string> prepareFolder(const ControlSocketPlace& place) {
    const std::string folder = place.folder();
    if (mkdir(folder.c_str(), S_IRWXU) != 0 && errno != EEXIST)
        return "Cannot make the folder " + folder + because(errno);
    if (!place.isFolderOurs) return std::nullopt;

    struct stat found {};
    if (lstat(folder.c_str(), &found) != 0) return "Cannot look at the folder " + folder + because(errno);
    if (!S_ISDIR(found.st_mode)) return folder + " is not a folder";
    if (found.st_uid != geteuid()) return "The folder " + folder + " belongs to another user";
    if ((found.st_mode & 07777) != S_IRWXU && chmod(folder.c_str(), S_IRWXU) != 0) {
        return "Cannot close the folder " + folder + " to others" + because(errno);
    }
    return std::nullopt;
}

std::optional<pid_t> holderOf(int lock) {
    // The holder writes its process id just after it has taken the lock.
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
        return refuse("Another KOVA agent" + process + " has this session", holder);
    }
    // The lock is valid without the process id, which only the message of a second agent needs.
    const auto isFull = [](int error) { return error == EFBIG || error == ENOSPC || error == EDQUOT; };
    if (!writeHolder(lock) && !isFull(errno)) return refuse("Cannot write to " + lockPath + because(errno));
    return claim;
}

AgentClaim::~AgentClaim() {
    // The lock file stays: removing it would let two agents lock two files of the same name.
    if (lock_ >= 0) close(lock_);
}

} // namespace kova
