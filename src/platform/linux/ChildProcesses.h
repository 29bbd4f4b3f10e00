// Starts programs, each in a session of its own and without the agent's descriptors, so that they outlive the agent
// unless requested otherwise. Nothing blocks: a pipe becomes readable when the start has succeeded or failed, and a
// process descriptor when the program has ended and can be reaped. Main thread only.
#pragma once

#include "platform/linux/EventLoop.h"
#include "platform/posix/ChildStarting.h"
#include "support/Lifetime.h"

#include <map>
#include <memory>
#include <set>

namespace kova {

class ChildProcesses final : public ChildStarting {
  public:
    explicit ChildProcesses(EventLoop& loop);
    /// Started programs continue to run; pending callbacks are not called.
    ~ChildProcesses() override;
    ChildProcesses(const ChildProcesses&) = delete;
    ChildProcesses& operator=(const ChildProcesses&) = delete;

    std::optional<pid_t> start(const Command& command, Started started, Ended ended = {}) override;
    /// Whether the process has ended with status 0. If several started processes had this number, the last one counts.
    bool hasSucceeded(pid_t process) const { return succeeded_.contains(process); }

  private:
    struct Child;
    void readOutcome(pid_t process);
    void watchForEnd(pid_t process);
    void reap(pid_t process);

    EventLoop& loop_;
    std::map<pid_t, std::unique_ptr<Child>> children_;
    std::set<pid_t> succeeded_;
    Lifetime lifetime_;
};

} // namespace kova
