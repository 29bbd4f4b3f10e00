// Programs that are started beside the application. Main thread only.
#pragma once

#include "platform/posix/ChildStarting.h"
#include "support/Lifetime.h"
#include "support/MainQueue.h"

#include <map>
#include <memory>

namespace kova::macos {

/// Each program starts in the current folder of this process, and outlives this process: macOS cannot end a program
/// together with its parent. A program that should end then watches its parent.
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
