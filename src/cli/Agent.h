// Asking the agent, and what its refusals mean for the exit code.
#pragma once

#include "cli/Arguments.h"
#include "control/client/ControlClient.h"

#include <nlohmann/json.hpp>

#include <chrono>
#include <deque>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace kova::cli {

/// Why a command ends without a result.
struct Trouble {
    ExitCode code = ExitCode::refused;
    std::string message;
    std::vector<std::string> choices{}; // what would have been understood
};

class Agent {
  public:
    static std::variant<Agent, Trouble> connect();
    std::variant<nlohmann::json, Trouble> ask(std::string_view method, const nlohmann::json& parameters,
                                              std::chrono::milliseconds patience = std::chrono::seconds(10));
    /// The next notification; with a patience of zero however long it takes.
    std::variant<nlohmann::json, Trouble> next(std::chrono::milliseconds patience = std::chrono::milliseconds::zero());
    const std::string& socketPath() const { return path_; }

  private:
    Agent(ControlClient client, std::string path) : client_(std::move(client)), path_(std::move(path)) {}
    std::variant<nlohmann::json, Trouble> receive();

    ControlClient client_;
    std::string path_;
    std::deque<nlohmann::json> told_; // notifications that came before an answer
};

} // namespace kova::cli
