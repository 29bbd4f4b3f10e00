// A program that a test runs, and that does not outlive the test.
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
    /// Waits until it ends; returns its exit code, or -1 if a signal ended it.
    int wait();
    pid_t process() const { return process_; }

  private:
    pid_t process_ = -1;
};

/// Arguments for execve, ended by a null pointer; valid as long as the texts are.
std::vector<char*> pointersTo(std::vector<std::string>& texts);

} // namespace kova::testing
