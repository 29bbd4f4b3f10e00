// Interface that starts other programs and reports when they end. Each system has one implementation.
#pragma once

#include <sys/types.h>

#include <functional>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace kova {

struct Command {
    std::vector<std::string> words;       // the first one is the program, by its absolute path
    std::string folder;                   // the program's current folder at its start
    std::vector<std::string> environment; // the whole environment, as NAME=value
    bool endsWithParent = false; // the program is killed when the starting thread ends, if the kernel supports that
};

/// The reason why the program was not started.
struct StartFailure {
    enum class Step { creatingProcess, enteringFolder, running };
    Step step = Step::running;
    int error = 0; // errno
};

class ChildStarting {
  public:
    virtual ~ChildStarting() = default;

    /// Called once, after `start` has returned. The argument is the process in which the program runs, or the failure.
    using Started = std::function<void(std::variant<pid_t, StartFailure>)>;
    /// Called after `started`, when the process has ended and was reaped. `waitStatus` is the status from waitpid.
    using Ended = std::function<void(pid_t, int waitStatus)>;
    /// Starts the program in a new session and without this process's descriptors. Does not wait. Returns the new
    /// process, which may still fail to run the program; absent if no process could be made. Main thread.
    virtual std::optional<pid_t> start(const Command& command, Started started, Ended ended) = 0;
};

} // namespace kova
