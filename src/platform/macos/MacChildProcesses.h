// Programs that are started beside the application. Main thread only.
#pragma once

#include "platform/posix/ChildStarting.h"
#include "support/Lifetime.h"
#include "support/MainQueue.h"

#include <map>
#include <memory>

namespace kova::macos {

/// Each starts in the folder of this process, and outlives it: no kernel ends a program with its parent here, so that
/// one that is to do so watches its parent.
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
