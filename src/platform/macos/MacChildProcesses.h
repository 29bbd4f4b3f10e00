// Starts other programs as child processes. Main thread only.
#pragma once

#include "platform/posix/ChildStarting.h"
#include "support/Lifetime.h"
#include "support/MainQueue.h"

#include <map>
#include <memory>

namespace kova::macos {

/// A program starts in the current folder of this process; `Command::folder` is not used. macOS cannot end a program
/// together with its parent, so `Command::endsWithParent` has no effect. A program that should end with its parent has
/// to watch its parent process.
class MacChildProcesses final : public ChildStarting {
  public:
    /// The queue outlives this.
    explicit MacChildProcesses(MainQueue& queue);
    ~MacChildProcesses() override;
    MacChildProcesses(const MacChildProcesses&) = delete;
    MacChildProcesses& operator=(const MacChildProcesses&) = delete;

    std::optional<pid_t> start(const Command& command, Started started, Ended ended) override;

  private:
    struct Child;
    void reap(pid_t process);

    MainQueue& queue_;
    std::map<pid_t, std::unique_ptr<Child>> children_;
    Lifetime lifetime_;
};

} // namespace kova::macos
