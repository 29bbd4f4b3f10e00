// Verbs that send one request, and `kova open` without a URL, which starts the agent.
#pragma once

#include "cli/Verbs.h"

namespace kova::cli {

/// Runs the verb.
ExitCode run(const Verb& verb, const Arguments& arguments);
/// Prints the result of the verb's method, as JSON with --json.
ExitCode printAnswer(const Verb& verb, const Arguments& arguments, const nlohmann::json& result);

/// Without a URL the agent is started unless it runs; it takes the place of this process.
ExitCode runOpen(const Verb& verb, const Arguments& arguments);
/// Prints each change until interrupted.
ExitCode runSubscribe(const Verb& verb, const Arguments& arguments);

} // namespace kova::cli
