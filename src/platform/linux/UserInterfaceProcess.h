// kova-ui as a child process: without our descriptors, and ended by the kernel when this process ends, however that
// happens. Main thread only.
#pragma once

#include "app/UserInterfaceServicing.h"
#include "platform/linux/ChildProcesses.h"

#include <cstdint>
#include <set>
#include <string>

namespace kova {

/// The path of kova-ui: the variable KOVA_UI if it is set (none if it is empty), else beside this program, in
/// ../libexec/kova relative to it, or in PATH. Absent if it is not found.
std::optional<std::string> findUserInterface(const std::string& ownProgram);

class UserInterfaceProcess final : public UserInterfaceServicing {
  public:
    /// `socketPath` is passed to the program as KOVA_SOCKET. The loop outlives this.
    UserInterfaceProcess(std::string ownProgram, std::string socketPath, EventLoop& loop);
    ~UserInterfaceProcess() override { end(); }

    std::optional<std::string> absence() const override;
    void start(std::function<void(UserInterfaceEnd)> ended) override;
    void end() override;
    std::optional<pid_t> process() const override { return process_; }

  private:
    void reaped(pid_t process, int waitStatus);

    std::string ownProgram_, socketPath_;
    EventLoop& loop_;
    std::optional<pid_t> process_;
    std::uint64_t run_ = 0;                       // counts starts and ends
    std::function<void(UserInterfaceEnd)> ended_; // of `process_`
    std::set<pid_t> ending_;                      // requested to end, still running
    ChildProcesses children_;
    Lifetime lifetime_;
};

} // namespace kova
