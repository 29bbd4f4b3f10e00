// An X server of the test's own, without a screen, and the programs that live on it. All end with the object.
#pragma once

#include <sys/types.h>

#include <optional>
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

  private:
    pid_t process_ = -1;
};

enum class Manager { none, openbox };

class PrivateServer {
  public:
    static bool isInstalled();
    /// The screen's size as "1280x800".
    explicit PrivateServer(const std::string& size);
    ~PrivateServer();

    const std::string& displayName() const { return displayName_; }
    /// A folder for files of the test, removed at the end.
    const std::string& folder() const { return folder_; }
    ChildProcess start(const std::vector<std::string>& command) const;
    /// Openbox, or the command in KOVA_TEST_WINDOW_MANAGER, to try another one by hand. Returns when it takes windows
    /// in.
    void startManager();
    void endManager() { manager_.end(); }
    void end() { server_.end(); }

  private:
    std::string folder_;
    std::string displayName_;
    ChildProcess server_;
    ChildProcess manager_;
};

} // namespace kova::testing
