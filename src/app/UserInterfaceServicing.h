// Platform interface to kova-ui, the program that draws the overlay and the menu. It is one process, which ends when
// the agent's process ends.
#pragma once

#include <sys/types.h>

#include <functional>
#include <optional>
#include <string>

namespace kova {

/// How the process ended.
enum class UserInterfaceEnd {
    byItself,     // regularly: the user closed it
    unexpectedly, // it crashed, was killed, or reported a failure
    notStarted,   // there is no such process: the program could not be run
};

class UserInterfaceServicing {
  public:
    virtual ~UserInterfaceServicing() = default;
    /// Why the program is not available; absent if it is.
    virtual std::optional<std::string> unavailableReason() const = 0;
    /// Starts the program unless it runs. When the process ends although `end` was not called, `ended` is called once,
    /// on the main queue and after this call has returned. Main thread; never waits.
    virtual void start(std::function<void(UserInterfaceEnd)> ended) = 0;
    /// Asks the process to end; no-op if it does not run. `start` may be called immediately afterwards.
    virtual void end() = 0;
    /// The process; absent if the program does not run.
    virtual std::optional<pid_t> process() const = 0;
};

} // namespace kova
