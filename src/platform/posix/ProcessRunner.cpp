#include "platform/posix/ProcessRunner.h"

#include "platform/posix/Spawn.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstring>

namespace kova {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::size_t kLongestText = 64 * 1024;
constexpr std::chrono::milliseconds kCheckInterval{20}; // pause between checks whether a silent program has ended

/// A pipe from the program to this process.
class Pipe {
  public:
    Pipe() {
        if (pipe(ends_.data()) != 0) {
            ends_ = {-1, -1};
            return;
        }
        for (const int end : ends_) (void)fcntl(end, F_SETFD, FD_CLOEXEC);
        (void)fcntl(ends_[0], F_SETFL, O_NONBLOCK);
    }
    ~Pipe() {
        closeEnd(0);
        closeEnd(1);
    }
    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;

    bool isOpen() const { return ends_[0] >= 0; }
    int readEnd() const { return ends_[0]; }
    int writeEnd() const { return ends_[1]; }
    void closeWriteEnd() { closeEnd(1); }
    /// Reads the available output. Output beyond `kLongestText` is read and dropped, so that the program does not
    /// block.
    void drainInto(std::string& text) {
        std::array<char, 4096> piece;
        while (isOpen()) {
            const ssize_t length = read(ends_[0], piece.data(), piece.size());
            if (length > 0) {
                const std::size_t room = kLongestText - std::min(kLongestText, text.size());
                text.append(piece.data(), std::min(room, static_cast<std::size_t>(length)));
            } else if (length == 0) {
                closeEnd(0);
            } else if (errno != EINTR) {
                return;
            }
        }
    }

  private:
    void closeEnd(std::size_t end) {
        if (ends_[end] >= 0) close(ends_[end]);
        ends_[end] = -1;
    }

    std::array<int, 2> ends_{};
};

} // namespace

ProcessOutcome ProcessRunner::run(const std::string& program, const std::vector<std::string>& arguments,
                                  Seconds deadline) {
    using Ending = ProcessOutcome::Ending;
    const auto end = Clock::now() + std::chrono::duration_cast<Clock::duration>(deadline);
    ProcessOutcome outcome;
    Pipe out;
    Pipe err;
    if (!out.isOpen() || !err.isOpen()) {
        outcome.problem = std::strerror(errno);
        return outcome;
    }
    SpawnPlan plan{.words = {program}, .output = out.writeEnd(), .error = err.writeEnd()};
    plan.words.insert(plan.words.end(), arguments.begin(), arguments.end());
    const auto [process, error] = spawn(plan);
    if (error != 0) {
        outcome.problem = std::strerror(error);
        return outcome;
    }
    out.closeWriteEnd();
    err.closeWriteEnd();

    int status = 0;
    pid_t ended = 0;
    bool hasTimedOut = false;
    while ((ended = waitpid(process, &status, WNOHANG)) == 0) {
        if (Clock::now() >= end) {
            hasTimedOut = true;
            kill(-process, SIGKILL);
            while (waitpid(process, &status, 0) < 0 && errno == EINTR) {
            }
            break;
        }
        std::array<pollfd, 2> waited = {{{out.readEnd(), POLLIN, 0}, {err.readEnd(), POLLIN, 0}}};
        (void)poll(waited.data(), waited.size(), static_cast<int>(kCheckInterval.count()));
        out.drainInto(outcome.output);
        err.drainInto(outcome.problem);
    }
    out.drainInto(outcome.output);
    err.drainInto(outcome.problem);
    const bool isStatusKnown = ended == process; // false if waitpid failed: the program was reaped elsewhere
    outcome.ending = hasTimedOut                          ? Ending::timedOut
                     : isStatusKnown && WIFEXITED(status) ? Ending::exited
                                                          : Ending::killed;
    if (outcome.ending == Ending::exited) outcome.exitCode = WEXITSTATUS(status);
    if (!isStatusKnown && !hasTimedOut && outcome.problem.empty()) outcome.problem = "how it ended is not known";
    return outcome;
}

} // namespace kova
