// Runs another program to its end, for functions that a system offers only as a command.
#pragma once

#include "support/MainQueue.h"

#include <string>
#include <vector>

namespace kova {

struct ProcessOutcome {
    enum class Ending { exited, killed, notStarted, timedOut };
    Ending ending = Ending::notStarted;
    int exitCode = 0;    // if `exited`
    std::string output;  // standard output, up to 64 KiB
    std::string problem; // standard error, up to 64 KiB, or why the program could not be started
    bool hasSucceeded() const { return ending == Ending::exited && exitCode == 0; }
};

class ProcessRunning {
  public:
    virtual ~ProcessRunning() = default;
    /// Runs the program, given by its full path, without a shell and without input, and waits for its end. Kills the
    /// program if it has not ended after `deadline`. Call on any thread but the main thread.
    virtual ProcessOutcome run(const std::string& program, const std::vector<std::string>& arguments,
                               Seconds deadline) = 0;
};

} // namespace kova
