// Starts programs, each in a session of its own and without the agent's descriptors, so that they outlive the agent
// unless requested otherwise. Nothing blocks: a pipe becomes readable when the start has succeeded or failed, and a
// process descriptor when the program has ended and can be reaped. Main thread only.
#pragma once

#include "platform/linux/EventLoop.h"
#include "support/Lifetime.h"

#include <sys/types.h>

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <variant>
#include <vector>

namespace kova {

struct Command {
    std::vector<std::string> words;       // the first one is the program, by its absolute path
    std::string folder;                   // to start in
    std::vector<std::string> environment; // all of it, as NAME=value
    bool endsWithParent = false;          // the kernel kills the program when this thread ends
};

/// Why the program could not be started.
struct StartFailure {
    enum class Step { creatingProcess, enteringFolder, running };
    Step step = Step::running;
    int error = 0; // errno
};

class ChildProcesses {
  public:
    explicit ChildProcesses(EventLoop& loop);
    /// Started programs go on; pending callbacks are not called.
    ~ChildProcesses();
    ChildProcesses(const ChildProcesses&) = delete;
    ChildProcesses& operator=(const ChildProcesses&) = delete;

    /// Calls `started` once, after this has returned: with the process once the program runs in it.
    using Started = std::function<void(std::variant<pid_t, StartFailure>)>;
    /// Called after `started`, once the process has ended and was reaped, with the status of waitpid.
    using Ended = std::function<void(pid_t, int waitStatus)>;
    /// Returns the process, which may still fail to run the program; absent if there is none.
    std::optional<pid_t> start(const Command& command, Started started, Ended ended = {});
    /// Whether the process, the last one started here with that number, has ended with status 0.
    bool hasSucceeded(pid_t process) const { return succeeded_.contains(process); }

  private:
    struct Child;
    void readOutcome(pid_t process);
    void followToItsEnd(pid_t process);
    void reap(pid_t process);

    EventLoop& loop_;
    std::map<pid_t, std::unique_ptr<Child>> children_;
    std::set<pid_t> succeeded_;
    Lifetime lifetime_;
};

} // namespace kova
