// The table of verbs: one row for each verb of the command line, with its parameters and its help. The parser, the
// help, the completion, the manual and the tests all use this table.
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
    std::string_view method;  // of the agent; empty for a verb that calls several methods or none
    std::string_view summary; // one line
    std::string_view description;
    std::string_view examples; // one command per line
    ParameterList parameters{};
    /// The result as text for the terminal.
    std::string (*print)(const nlohmann::json& result, const Arguments& arguments) = nullptr;
    /// Runs the verb; null for a verb that sends one request and prints the result.
    ExitCode (*run)(const Verb& verb, const Arguments& arguments) = nullptr;
    /// Returns an error if the arguments cannot be combined; null if every combination is allowed.
    std::optional<std::string> (*check)(const Arguments& arguments) = nullptr;
};

std::span<const Verb> verbs();
/// Null when there is none.
const Verb* verbNamed(std::string_view name);

/// The text of `kova help`: all verbs with their summaries.
std::string overview();
/// The verbs of a group such as "layout"; empty when there is no such group.
std::string groupOverview(std::string_view group);

} // namespace kova::cli
