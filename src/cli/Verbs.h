// Every verb of the command line with its parameters and its help: one row each, from which the parser, the help, the
// completion, the manual and the tests work.
#pragma once

#include "cli/Arguments.h"
#include "cli/Parameter.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace kova::cli {

struct Verb {
    std::string_view name;    // "layout select"
    std::string_view method;  // of the agent
    std::string_view summary; // one line
    std::string_view description;
    std::string_view examples; // one command per line
    ParameterList parameters{};
    /// The result as text for the terminal.
    std::string (*print)(const nlohmann::json& result, const Arguments& arguments) = nullptr;
    /// Runs the verb; null for a verb that is one request whose result is printed.
    ExitCode (*run)(const Verb& verb, const Arguments& arguments) = nullptr;
    /// An error of the arguments' combination; null if every combination is allowed.
    std::optional<std::string> (*check)(const Arguments& arguments) = nullptr;
};

std::span<const Verb> verbs();
/// Null when there is none.
const Verb* verbNamed(std::string_view name);

/// "kova", the verbs and what they do.
std::string overview();
/// The verbs of a group such as "layout"; empty when there is no such group.
std::string groupOverview(std::string_view group);

} // namespace kova::cli
