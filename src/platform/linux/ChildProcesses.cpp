#include "platform/linux/ChildProcesses.h"

#include <fcntl.h>
#include <pthread.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <utility>

namespace kova {

namespace {

constexpr unsigned int kCloseRangeCloexec = 4; // the flag CLOSE_RANGE_CLOEXEC
constexpr rlim_t kMaxDescriptors = 65536;      // closed one by one if the kernel has no close_range
constexpr Seconds kReapingPause{5};            // between two checks if the kernel has no pidfd

std::vector<char*> pointersTo(const std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    for (const auto& text : texts) pointers.push_back(const_cast<char*>(text.c_str()));
    pointers.push_back(nullptr);
    return pointers;
}

/// All that the child needs, prepared before the fork, since the child must not allocate memory between fork and exec.
struct ChildPlan {
    std::vector<char*> words, environment;
    const char* folder = nullptr;
    int outcome = -1;                       // descriptor to which an error is written
    std::optional<pid_t> parentToDieWith{}; // the parent, if its end is to kill the child
};

void resetSignals() {
    for (int signal = 1; signal < NSIG; ++signal) std::signal(signal, SIG_DFL);
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
}

/// Connects the standard descriptors to /dev/null and closes all others when the program starts.
void closeInheritedDescriptors() {
    const int null = open("/dev/null", O_RDWR);
    for (const int standard : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) dup2(null, standard);
    if (syscall(SYS_close_range, STDERR_FILENO + 1, ~0U, kCloseRangeCloexec) == 0) return;
    rlimit limit{};
    getrlimit(RLIMIT_NOFILE, &limit);
    const int last = static_cast<int>(std::min(limit.rlim_cur, kMaxDescriptors));
    for (int descriptor = STDERR_FILENO + 1; descriptor < last; ++descriptor) fcntl(descriptor, F_SETFD, FD_CLOEXEC);
}

[[noreturn]] void reportAndEnd(int outcome, StartFailure::Step step) {
    const StartFailure failure{step, errno};
    // The record is small enough to be written atomically.
    [[maybe_unused]] const auto written = write(outcome, &failure, sizeof failure);
    _exit(127);
}

/// Runs the program in the child.
[[noreturn]] void runInChild(const ChildPlan& plan) {
    setsid();
    if (plan.parentToDieWith) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        if (getppid() != *plan.parentToDieWith) _exit(127); // the parent has ended already
    }
    closeInheritedDescriptors();
    if (chdir(plan.folder) != 0) reportAndEnd(plan.outcome, StartFailure::Step::enteringFolder);
    resetSignals(); // unblocks signals only after the agent's handlers have been removed
    execve(plan.words[0], plan.words.data(), plan.environment.data());
    reportAndEnd(plan.outcome, StartFailure::Step::running);
}

/// Runs the plan in a child process. Returns the child's process to the parent; negative on failure, with errno set.
pid_t forkChild(const ChildPlan& plan) {
    sigset_t all, before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    const pid_t child = fork();
    if (child == 0) runInChild(plan);
    const int error = errno;
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    errno = error;
    return child;
}

} // namespace

struct ChildProcesses::Child {
    int outcome = -1; // descriptor, readable once the start has succeeded or failed
    int end = -1;     // descriptor, readable once the process has ended
    Started started;
    Ended ended;
    Subscription watchingOutcome, watchingEnd;

    ~Child() {
        stopWatchingOutcome();
        watchingEnd = {};
        if (end >= 0) close(end);
    }
    void stopWatchingOutcome() {
        watchingOutcome = {};
        if (outcome >= 0) close(outcome);
        outcome = -1;
    }
};

ChildProcesses::ChildProcesses(EventLoop& loop) : loop_(loop) {}

ChildProcesses::~ChildProcesses() = default;

std::optional<pid_t> ChildProcesses::start(const Command& command, Started started, Ended ended) {
    const auto fail = [&](int error) -> std::optional<pid_t> {
        loop_.post(lifetime_.guard([started = std::move(started), error] {
            started(StartFailure{StartFailure::Step::creatingProcess, error});
        }));
        return std::nullopt;
    };
    std::array<int, 2> pipe{};
    if (pipe2(pipe.data(), O_CLOEXEC | O_NONBLOCK) != 0) return fail(errno);
    // The child replaces its standard descriptors, so the number of this descriptor must be above theirs.
    const int outcome = fcntl(pipe[1], F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    close(pipe[1]);
    const ChildPlan plan{pointersTo(command.words), pointersTo(command.environment), command.folder.c_str(), outcome,
                         command.endsWithParent ? std::optional(getpid()) : std::nullopt};
    const pid_t process = outcome < 0 ? -1 : forkChild(plan);
    const int error = errno;
    if (outcome >= 0) close(outcome);
    if (process < 0) {
        close(pipe[0]);
        return fail(error);
    }
    auto child = std::make_unique<Child>();
    child->outcome = pipe[0];
    child->started = std::move(started);
    child->ended = std::move(ended);
    child->watchingOutcome = loop_.watchReadable(pipe[0], [this, process] { readOutcome(process); });
    children_[process] = std::move(child);
    succeeded_.erase(process);
    watchForEnd(process);
    return process;
}

/// Reads the error if the program could not be started. A successful start has closed the other end of the pipe, so
/// that nothing is read.
void ChildProcesses::readOutcome(pid_t process) {
    const auto found = children_.find(process);
    if (found == children_.end()) return;
    Child& child = *found->second;
    StartFailure failure;
    const auto length = read(child.outcome, &failure, sizeof failure);
    if (length < 0 && (errno == EAGAIN || errno == EINTR)) return;
    std::variant<pid_t, StartFailure> outcome = process;
    if (length == static_cast<ssize_t>(sizeof failure)) outcome = failure;
    const auto started = std::exchange(child.started, {});
    // The descriptor must not be closed in the callback of its watch.
    loop_.post(lifetime_.guard([this, process, started, outcome] {
        if (const auto known = children_.find(process); known != children_.end()) known->second->stopWatchingOutcome();
        if (started) started(outcome);
    }));
}

void ChildProcesses::watchForEnd(pid_t process) {
    Child& child = *children_[process];
    child.end = static_cast<int>(syscall(SYS_pidfd_open, process, 0));
    if (child.end >= 0) {
        fcntl(child.end, F_SETFD, FD_CLOEXEC);
        child.watchingEnd = loop_.watchReadable(
            child.end, [this, process] { loop_.post(lifetime_.guard([this, process] { reap(process); })); });
    } else {
        loop_.after(kReapingPause, lifetime_.guard([this, process] { reap(process); }));
    }
}

void ChildProcesses::reap(pid_t process) {
    const auto found = children_.find(process);
    if (found == children_.end()) return;
    const bool isOutcomeReported = !found->second->started;
    int status = 0;
    const pid_t reaped = isOutcomeReported ? waitpid(process, &status, WNOHANG) : 0;
    if (reaped != 0) {
        if (reaped == process && WIFEXITED(status) && WEXITSTATUS(status) == 0) succeeded_.insert(process);
        const Ended ended = std::move(found->second->ended);
        children_.erase(found);
        if (ended) ended(process, status);
    } else if (found->second->end < 0) {
        loop_.after(kReapingPause, lifetime_.guard([this, process] { reap(process); }));
    }
}

} // namespace kova
