// Requests to the agent, and the exit codes of its errors.
#pragma once

#include "cli/Arguments.h"
#include "control/client/ControlClient.h"
#include "support/Result.h"

#include <nlohmann/json.hpp>

#include <chrono>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

namespace kova::cli {

/// Why a command ends without a result.
struct CommandError {
    ExitCode code = ExitCode::refused;
    std::string message;
    std::vector<std::string> choices{}; // names that would have been accepted
};
template <class Value>
using CommandResult = Result<Value, CommandError>;

class Agent {
  public:
    static CommandResult<Agent> connect();
    /// Calls the agent's method and returns its result.
    CommandResult<nlohmann::json> ask(std::string_view method, const nlohmann::json& parameters,
                                      std::chrono::milliseconds timeout = std::chrono::seconds(10));
    /// Waits for the next notification of the method and returns its parameters; skips other notifications. A timeout
    /// of zero means no timeout.
    CommandResult<nlohmann::json> next(std::string_view method,
                                       std::chrono::milliseconds timeout = std::chrono::milliseconds::zero());
    const std::string& socketPath() const { return path_; }

  private:
    Agent(ControlClient client, std::string path) : client_(std::move(client)), path_(std::move(path)) {}
    CommandResult<nlohmann::json> receive();

    ControlClient client_;
    std::string path_;
    std::deque<nlohmann::json> notifications_; // received while waiting for a response
};

/// Connects and calls one method.
CommandResult<nlohmann::json> askAgent(std::string_view method, const nlohmann::json& parameters);

} // namespace kova::cli
