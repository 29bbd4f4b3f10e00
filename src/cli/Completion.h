// Completion: the shells call `kova --complete WORD...`, with the word at the cursor as the last one. Verbs and options
// come from the tables of verbs, values from their parameters.
#pragma once

#include "cli/AgentNames.h"
#include "cli/Arguments.h"

#include <span>
#include <string>
#include <vector>

namespace kova::cli {

/// Candidates that begin with the last word, in any case. A single candidate without text stands for file names.
std::vector<Candidate> candidatesFor(std::span<const std::string> words);

/// Prints the candidates, one per line, each with its description after a tab.
ExitCode runComplete(std::span<char* const> words);

} // namespace kova::cli
