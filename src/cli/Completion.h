// Completion. A shell calls `kova --complete WORD...`; the last word is the one at the cursor. The tables of verbs
// supply verbs and options; the parameters supply values.
#pragma once

#include "cli/AgentNames.h"
#include "cli/Arguments.h"

#include <span>
#include <string>
#include <vector>

namespace kova::cli {

/// The candidates that begin with the last word, ignoring case. A single empty candidate tells the shell to offer file
/// names.
std::vector<Candidate> candidatesFor(std::span<const std::string> words);

/// Prints the candidates, one per line, each with its description after a tab.
ExitCode runComplete(std::span<char* const> words);

} // namespace kova::cli
