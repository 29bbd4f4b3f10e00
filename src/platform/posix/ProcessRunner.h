// Runs programs with the functions that Linux and the Mac have in common.
#pragma once

#include "app/ProcessRunning.h"

namespace kova {

class ProcessRunner final : public ProcessRunning {
  public:
    /// The program starts with default signals, in a process group of its own, which is killed as a whole at the
    /// deadline. Children that outlive the program are not awaited.
    ProcessOutcome run(const std::string& program, const std::vector<std::string>& arguments,
                       Seconds deadline) override;
};

} // namespace kova
