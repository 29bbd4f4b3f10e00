// Runs programs by the means that Linux and the Mac have in common.
#pragma once

#include "app/ProcessRunning.h"

namespace kova {

class ProcessRunner final : public ProcessRunning {
  public:
    /// The program begins with the usual signals, in a process group of its own that ends as a whole at the deadline.
    /// Children that it leaves behind are not waited for.
    ProcessOutcome run(const std::string& program, const std::vector<std::string>& arguments,
                       Seconds deadline) override;
};

} // namespace kova
