// The agent on a Mac: every part of the system behind its seam, and the agent of any desktop on top of them. Main
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
    /// The queues of the process are made with the first agent and stay.
    explicit MacAgent(const AgentOptions& options);
    ~MacAgent();
    MacAgent(const MacAgent&) = delete;
    MacAgent& operator=(const MacAgent&) = delete;

    /// Opens the URLs that came before, too. The process's exit code when it cannot manage this session, for the reason
    /// that `startProblem` names; absent when it does.
    [[nodiscard]] std::optional<int> start();
    /// Why the start failed, as a sentence for the user; empty when it did not.
    const std::string& startProblem() const { return startProblem_; }
    /// Hidden and minimized windows are shown again, and the preferences are on disk.
    void stop();
    void openURLs(const std::vector<std::string>& urls);
    /// KOVA became active: gives the activation back when it came by a URL and no dialog is shown.
    void returnActivation();
    /// The user opened the program again: shows the settings, where no program draws them the menu of the menu-bar
    /// item.
    void reopen();

  private:
    struct Parts;

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
