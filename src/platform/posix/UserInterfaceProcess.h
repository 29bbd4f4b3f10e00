// Runs kova-ui as a child process, which ends with this process. Main thread only.
#pragma once

#include "app/UserInterfaceServicing.h"
#include "platform/posix/ChildStarting.h"
#include "support/Lifetime.h"
#include "support/MainQueue.h"

#include <cstdint>
#include <functional>
#include <set>
#include <string>

namespace kova {

/// Finds a program in PATH.
using ProgramSearch = std::function<std::optional<std::string>(const std::string& name)>;

/// The path of kova-ui; absent if it is not found. If the variable KOVA_UI is set, only the path in it is tried; an
/// empty variable means that there is no kova-ui. Otherwise these places are tried in order: the folder of
/// `ownProgram`, ../libexec/kova relative to that folder, the application bundle in ../Helpers, and the result of
/// `search`.
std::optional<std::string> findUserInterface(const std::string& ownProgram, const ProgramSearch& search = {});

class UserInterfaceProcess final : public UserInterfaceServicing {
  public:
    /// `find` is called before each start and returns the path of kova-ui. In its environment kova-ui gets `socketPath`
    /// as KOVA_SOCKET and the number of this process as KOVA_AGENT_PROCESS. `queue` and `children` outlive this object.
    UserInterfaceProcess(std::function<std::optional<std::string>()> find, std::string socketPath, MainQueue& queue,
                         ChildStarting& children);
    ~UserInterfaceProcess() override { end(); }

    std::optional<std::string> unavailableReason() const override;
    void start(std::function<void(UserInterfaceEnd)> ended) override;
    void end() override;
    std::optional<pid_t> process() const override { return process_; }

  private:
    void reaped(pid_t process, int waitStatus);

    std::function<std::optional<std::string>()> find_;
    std::string socketPath_;
    MainQueue& queue_;
    ChildStarting& children_;
    std::optional<pid_t> process_;
    std::uint64_t run_ = 0;                       // counts the calls of `start` and `end`; older callbacks are ignored
    std::function<void(UserInterfaceEnd)> ended_; // the callback of the last `start`
    std::set<pid_t> ending_;                      // processes that got SIGTERM and still run
    Lifetime lifetime_;
};

} // namespace kova
