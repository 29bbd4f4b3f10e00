// Platform interface to the program that draws the overlay and the menu: one process, which ends with this one.
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
    /// Starts the program unless it runs. `ended` is called once, on the main queue and after this has returned, when
    /// the process ends without `end`. Main thread; never waits.
    virtual void start(std::function<void(UserInterfaceEnd)> ended) = 0;
    /// Asks the process to end; no-op if it does not run. It may be started again at once.
    virtual void end() = 0;
    /// Absent when it does not run.
    virtual std::optional<pid_t> process() const = 0;
};

} // namespace kova
