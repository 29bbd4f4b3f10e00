// From the words after a verb to its arguments, and the help of a verb. Both come from the verb's row; a general parser
// would take longer to start than the whole rest of a command.
#pragma once

#include "cli/Verbs.h"
#include "support/Result.h"

#include <span>
#include <string>

namespace kova::cli {

/// Nothing to carry out: the user asked for help (then the code is `done`) or the words are wrong.
struct ParseEnd {
    ExitCode code = ExitCode::wrongUsage;
    std::string text;
};

Result<Arguments, ParseEnd> parse(const Verb& verb, std::span<char* const> words);
std::string help(const Verb& verb);
/// "--display DISPLAY".
std::string spelling(const Parameter& parameter);

} // namespace kova::cli
