// An X server of the test's own, without a screen, and the programs that live on it. All end with the object.
#pragma once

#include "tests/desktop/ChildProcess.h"

#include <string>
#include <vector>

namespace kova::testing {

enum class Manager { none, openbox };
/// Whether the server reports the processes of its clients. If not, a test's clients may count as several programs,
/// though all are of one process.
enum class ClientProcessNumbers { untold, told };

class PrivateServer {
  public:
    static bool isInstalled();
    /// The screen's size as "1280x800".
    explicit PrivateServer(const std::string& size, ClientProcessNumbers numbers = ClientProcessNumbers::untold);
    ~PrivateServer();

    const std::string& displayName() const { return displayName_; }
    /// A folder for files of the test, removed at the end.
    const std::string& folder() const { return folder_; }
    ChildProcess start(const std::vector<std::string>& command) const;
    /// In place of Openbox the command in KOVA_TEST_WINDOW_MANAGER, to try another one by hand. Returns when it takes
    /// windows in.
    void startManager();
    void endManager() { manager_.end(); }
    /// Stops the window manager with SIGSTOP, to simulate a busy machine; it handles requests after it was continued.
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
