// From the words after a verb to its arguments, and the help that belongs to them. Both come from the tables of verbs
// and options: a general parser would take longer to start than the whole rest of a command.
#pragma once

#include "cli/Verbs.h"

#include <span>
#include <string>
#include <variant>

namespace kova::cli {

/// Nothing to carry out: the user asked for help (then the code is `done`) or what was written makes no sense.
struct ParseEnd {
    ExitCode code = ExitCode::wrongUsage;
    std::string text;
};

std::variant<Arguments, ParseEnd> parse(const Verb& verb, std::span<char* const> words);
std::string help(const Verb& verb);

} // namespace kova::cli
