// The agent on a Mac: owns the implementations of all platform interfaces, and the `SessionAgent` that uses them. Main
// thread.
#pragma once

#include "agent/AgentOptions.h"
#include "agent/SessionAgent.h"
#include "app/ActivationReturn.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace kova {

class MacAgent {
  public:
    /// The main queue is created with the first agent and never destroyed.
    explicit MacAgent(const AgentOptions& options);
    ~MacAgent();
    MacAgent(const MacAgent&) = delete;
    MacAgent& operator=(const MacAgent&) = delete;

    /// Starts the agent and opens the URLs that arrived earlier. Returns the exit code of the process if that fails,
    /// with the reason in `startProblem`; absent on success.
    [[nodiscard]] std::optional<int> start();
    /// Why the start failed, as a sentence for the user; empty on success.
    const std::string& startProblem() const { return startProblem_; }
    /// Shows hidden and minimized windows again, and writes the preferences to disk.
    void stop();
    void openURLs(const std::vector<std::string>& urls);
    /// Call when KOVA became active: after an opening that shows no dialog, passes the activation to the application
    /// that was active before, or to kova-ui.
    void useActivation();
    /// Call when the user opens the program again: shows the settings or, if no program draws them, the menu of the
    /// menu-bar item.
    void reopen();

  private:
    struct Parts;
    void noteOpened(OpenedWindow window);

    const AgentOptions options_;
    std::unique_ptr<Parts> parts_;
    bool isStarted_ = false;
    std::vector<std::string> waitingURLs_;
    std::string startProblem_;
    ActivationReturn activationReturn_;
};

/// Ends the process soon, in the system's way: the application's delegate stops the agent first.
void quitMacAgent();

} // namespace kova
