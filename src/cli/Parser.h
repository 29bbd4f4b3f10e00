// From the words after a verb to its arguments, and the help that belongs to them. Both come from the tables of verbs
// and options: a general parser would take longer to start than the whole rest of a command.
#pragma once

#include "cli/Verbs.h"

#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace kova::cli {

/// Nothing to carry out: the user asked for help (then the code is `done`) or what was written makes no sense.
struct ParseEnd {
    ExitCode code = ExitCode::wrongUsage;
    std::string text;
};

/// Takes what belongs to every verb.
inline constexpr std::uint64_t kEveryVerb = ~std::uint64_t{0};

/// One thing that a verb takes. Without a flag it is a word by itself; without a value it is there or not.
struct Taking {
    std::uint64_t takenBy = 0; // of `Takes`, or kEveryVerb
    std::string_view flag;
    std::string_view value;
    std::string_view meaning;
    bool isRequired = false;
};
/// What the verb takes: words by themselves in their order.
std::vector<Taking> takingsOf(const Verb& verb);

std::variant<Arguments, ParseEnd> parse(const Verb& verb, std::span<char* const> words);
std::string help(const Verb& verb);

} // namespace kova::cli
