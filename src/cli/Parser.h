// Parses the words after a verb into its arguments, and writes the help of a verb. Both use the verb's row in the
// table. No general-purpose parsing library is used: its start would take longer than the rest of a command.
#pragma once

#include "cli/Verbs.h"
#include "support/Result.h"

#include <span>
#include <string>
#include <vector>

namespace kova::cli {

/// The reason why there are no arguments: a word is wrong, or the user requested help. For help the code is `done` and
/// the text is empty.
struct ParseEnd {
    ExitCode code = ExitCode::wrongUsage;
    std::string text{};
    std::vector<std::string> choices{}; // words that would be right, where they can be listed
};

Result<Arguments, ParseEnd> parse(const Verb& verb, std::span<char* const> words);
std::string help(const Verb& verb);
/// The help of a verb as a value: name, summary, description, parameters and examples.
nlohmann::json helpRecord(const Verb& verb);
/// How the help writes the parameter: "--display DISPLAY".
std::string spelling(const Parameter& parameter);

} // namespace kova::cli
