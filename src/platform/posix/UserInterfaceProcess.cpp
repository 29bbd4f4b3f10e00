#include "platform/posix/UserInterfaceProcess.h"

#include "platform/posix/Spawn.h"

#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <string_view>
#include <utility>

namespace kova {

namespace {

constexpr const char* kProgram = "kova-ui";
constexpr std::string_view kSocketVariable = "KOVA_SOCKET=", kAgentVariable = "KOVA_AGENT_PROCESS=";
constexpr Seconds kTerminationTimeout{2}; // the time from SIGTERM to SIGKILL

std::vector<std::string> environmentWith(const std::string& socketPath) {
    auto environment = ownEnvironment();
    std::erase_if(environment, [](const std::string& variable) {
        return variable.starts_with(kSocketVariable) || variable.starts_with(kAgentVariable);
    });
    environment.push_back(std::string(kSocketVariable) + socketPath);
    environment.push_back(std::string(kAgentVariable) + std::to_string(getpid()));
    return environment;
}

} // namespace

std::optional<std::string> findUserInterface(const std::string& ownProgram, const ProgramSearch& search) {
    const auto isProgram = [](const std::string& path) { return access(path.c_str(), X_OK) == 0; };
    if (const char* named = std::getenv("KOVA_UI")) {
        return *named && isProgram(named) ? std::optional(std::string(named)) : std::nullopt;
    }
    const std::filesystem::path folder = std::filesystem::path(ownProgram).parent_path();
    for (const auto& path : {folder / kProgram, folder.parent_path() / "libexec/kova" / kProgram,
                             folder.parent_path() / "Helpers/kova-ui.app/Contents/MacOS" / kProgram}) {
        if (!ownProgram.empty() && isProgram(path)) return path.string();
    }
    return search ? search(kProgram) : std::nullopt;
}

UserInterfaceProcess::UserInterfaceProcess(std::function<std::optional<std::string>()> find, std::string socketPath,
                                           MainQueue& queue, ChildStarting& children) :
    find_(std::move(find)),
    socketPath_(std::move(socketPath)), queue_(queue), children_(children) {}

std::optional<std::string> UserInterfaceProcess::unavailableReason() const {
    if (find_()) return std::nullopt;
    return "kova-ui is not installed: no tile footers, backdrop or settings are shown";
}

void UserInterfaceProcess::start(std::function<void(UserInterfaceEnd)> ended) {
    if (process_) return;
    ended_ = std::move(ended);
    const auto program = find_();
    const Command command{.words = {program.value_or("/nonexistent")},
                          .folder = "/",
                          .environment = environmentWith(socketPath_),
                          .endsWithParent = true};
    const std::uint64_t run = ++run_;
    process_ = children_.start(command, lifetime_.guard([this, run](const std::variant<pid_t, StartFailure>& how) {
        if (run != run_ || !std::holds_alternative<StartFailure>(how)) return;
        process_.reset();
        if (const auto notify = std::exchange(ended_, nullptr)) notify(UserInterfaceEnd::notStarted);
    }),
                               lifetime_.guard([this](pid_t process, int waitStatus) { reaped(process, waitStatus); }));
}

void UserInterfaceProcess::reaped(pid_t process, int waitStatus) {
    ending_.erase(process);
    if (process != process_) return;
    process_.reset();
    const bool isRegular = WIFEXITED(waitStatus) && WEXITSTATUS(waitStatus) == 0;
    if (const auto notify = std::exchange(ended_, nullptr)) {
        notify(isRegular ? UserInterfaceEnd::byItself : UserInterfaceEnd::unexpectedly);
    }
}

void UserInterfaceProcess::end() {
    if (!process_) return;
    const pid_t process = *std::exchange(process_, std::nullopt);
    ended_ = nullptr;
    ++run_;
    ending_.insert(process);
    kill(process, SIGTERM);
    queue_.after(kTerminationTimeout, lifetime_.guard([this, process] {
        if (ending_.contains(process)) kill(process, SIGKILL);
    }));
}

} // namespace kova
