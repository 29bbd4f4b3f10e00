// A private X server that needs no display, and the window manager that a test runs on it. The destructor ends both.
#pragma once

#include "tests/desktop/ChildProcess.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace kova::testing {

enum class Manager { none, openbox };

/// The name of the parameter in the names of tests.
inline std::string managerName(const ::testing::TestParamInfo<Manager>& chosen) {
    return chosen.param == Manager::none ? "NoManager" : "Openbox";
}
/// Whether the server reports the processes of its clients. If it does not, several clients in the process of the test
/// count as different programs.
enum class ClientProcessNumbers { unreported, reported };

class PrivateServer {
  public:
    static bool isInstalled();
    /// The screen's size as "1280x800".
    explicit PrivateServer(const std::string& size, ClientProcessNumbers numbers = ClientProcessNumbers::unreported);
    ~PrivateServer();

    const std::string& displayName() const { return displayName_; }
    /// A folder for files of the test, removed at the end.
    const std::string& folder() const { return folder_; }
    ChildProcess start(const std::vector<std::string>& command) const;
    /// Starts Openbox, or the window manager whose command is in the variable KOVA_TEST_WINDOW_MANAGER. Waits until the
    /// window manager manages windows.
    void startManager();
    void endManager() { manager_.end(); }
    /// Stops the window manager with SIGSTOP to simulate a busy machine. Its requests wait until `resumeManager`.
    void pauseManager();
    void resumeManager();
    void end() { server_.end(); }

  private:
    std::string folder_;
    std::string displayName_;
    ChildProcess server_;
    ChildProcess manager_;
};

} // namespace kova::testing
