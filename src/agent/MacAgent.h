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

    /// Starts the agent and opens the URLs that arrived before. If the start fails, returns the exit code of the
    /// process and sets `startProblem`; absent on success.
    [[nodiscard]] std::optional<int> start();
    /// Why the start failed, as a sentence for the user; empty on success.
    const std::string& startProblem() const { return startProblem_; }
    /// Shows hidden and minimized windows again, and writes the preferences to disk.
    void stop();
    void openURLs(const std::vector<std::string>& urls);
    /// Call when KOVA became active. If the user has just opened KOVA and no dialog is shown, passes the activation to
    /// kova-ui or to the application that was active before.
    void useActivation();
    /// Call when the user opens the running program again. Shows the settings; if no program draws them, shows the menu
    /// of the menu-bar item.
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
