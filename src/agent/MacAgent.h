// The agent on a Mac: every part of the system behind its seam, and the agent of any desktop on top of them. Main
// thread.
#pragma once

#include "agent/AgentOptions.h"
#include "agent/SessionAgent.h"

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

    /// Opens the URLs that came before, too. The process's exit code when it cannot manage this session, and it has
    /// been said why; absent when it does.
    [[nodiscard]] std::optional<int> start();
    /// The desktop gets back what was borrowed, and the preferences are on disk.
    void stop();
    void openURLs(const std::vector<std::string>& urls);

  private:
    struct Parts;

    const AgentOptions options_;
    std::unique_ptr<Parts> parts_;
    bool isStarted_ = false;
    std::vector<std::string> waitingURLs_;
};

/// Ends the process soon, in the system's way: whoever has to be told is told first.
void quitMacAgent();

} // namespace kova
