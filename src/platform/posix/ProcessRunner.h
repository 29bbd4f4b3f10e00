// Runs programs with the functions that Linux and the Mac have in common.
#pragma once

#include "app/ProcessRunning.h"

namespace kova {

class ProcessRunner final : public ProcessRunning {
  public:
    /// The program starts with the default signal handling, in a new process group. At the deadline the whole group is
    /// killed. `run` does not wait for children that outlive the program.
    ProcessOutcome run(const std::string& program, const std::vector<std::string>& arguments,
                       Seconds deadline) override;
};

} // namespace kova
