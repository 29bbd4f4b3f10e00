// A program that a test runs. It ends with the test, even if the test crashes.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace kova::testing {

/// A child process; the destructor kills it and waits for its end.
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
    /// Waits until the process ends. Returns the exit code, or -1 if a signal ended the process.
    int wait();
    pid_t process() const { return process_; }

  private:
    pid_t process_ = -1;
};

/// The texts as an argument list for execve, with a null pointer at the end; valid as long as `texts` is unchanged.
std::vector<char*> pointersTo(std::vector<std::string>& texts);

} // namespace kova::testing
