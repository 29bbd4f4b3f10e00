// A private login session for a test: folders, environment, the real agent and the real command line in it.
#pragma once

#include "support/Geometry.h"
#include "tests/desktop/PrivateServer.h"

#include <nlohmann/json.hpp>
#include <sys/types.h>

#include <chrono>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace kova::testing {

struct Finished {
    int exitCode = -1;  // 128 + signal number if a signal ended the process
    std::string output; // standard output and standard error
};

class Session {
  public:
    /// An empty display name leaves DISPLAY out of the environment.
    Session(const std::string& folder, const std::string& displayName);
    /// Kills the agent if it still runs.
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    void setVariable(const std::string& name, const std::string& value) { environment_[name] = value; }
    /// Runs a program in the session and waits for its end.
    Finished run(const std::vector<std::string>& command) const;
    Finished kova(std::vector<std::string> arguments) const;
    /// The value of the member WHAT in the output of `kova query WHAT --json`.
    nlohmann::json query(const std::string& what) const;

    pid_t startAgent(std::vector<std::string> arguments = {});
    /// Waits until the agent responds to a command; false after twenty seconds.
    bool agentResponds() const;
    pid_t agent() const { return agent_; }
    void signalAgent(int signal) const;
    /// Waits for the end of the agent; absent if it does not end within twenty seconds.
    std::optional<Finished> waitForAgent();

    std::string preferences() const { return folder_ + "/config/kova/preferences.json"; }
    std::string socket() const { return folder_ + "/runtime/kova/agent.sock"; }

  private:
    pid_t start(const std::vector<std::string>& command, int output) const;

    std::string folder_;
    std::map<std::string, std::string> environment_;
    pid_t agent_ = -1;
};

/// Waits until the condition holds; false after the timeout.
bool eventually(const std::function<bool()>& holds, std::chrono::seconds timeout = std::chrono::seconds(20));

/// Waits until no window has moved for `quietFor`; false after twenty seconds. `takeMoves` returns the number of moves
/// since its last call.
bool movementEnds(const std::function<int()>& takeMoves, std::chrono::milliseconds quietFor);

/// "15,15 1254x1382"
std::string text(const CGRect& r);

} // namespace kova::testing
