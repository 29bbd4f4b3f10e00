// A program that a test runs beside it, and that does not outlive the test.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace kova::testing {

/// A child process; killed and waited for at the end.
class ChildProcess {
  public:
    ChildProcess() = default;
    /// `inherited`: a descriptor that the child keeps, or -1.
    ChildProcess(const std::vector<std::string>& command, const std::vector<std::string>& environment,
                 int inherited = -1);
    ChildProcess(ChildProcess&& other) noexcept;
    ChildProcess& operator=(ChildProcess&& other) noexcept;
    ~ChildProcess();
    void end();
    /// Until it ends by itself; its exit code, or -1 when something else ended it.
    int wait();
    pid_t process() const { return process_; }

  private:
    pid_t process_ = -1;
};

/// For execve: valid as long as the texts are, and ended by a null pointer.
std::vector<char*> pointersTo(std::vector<std::string>& texts);

} // namespace kova::testing
