// Verbs that send one request; `kova open`, which may start the agent; and `kova subscribe`.
#pragma once

#include "cli/Verbs.h"

namespace kova::cli {

/// Runs the verb.
ExitCode run(const Verb& verb, const Arguments& arguments);
/// Prints the result of the verb's method, as JSON with --json.
ExitCode printAnswer(const Verb& verb, const Arguments& arguments, const nlohmann::json& result);

/// With a URL, sends it to the agent. Without a URL, shows the settings of the running agent, or starts an agent in
/// place of this process.
ExitCode runOpen(const Verb& verb, const Arguments& arguments);
/// Prints each change until interrupted.
ExitCode runSubscribe(const Verb& verb, const Arguments& arguments);

} // namespace kova::cli
