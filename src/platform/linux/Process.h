// Settings of the agent's process that are made before anything else, and facts about the process.
#pragma once

#include <string>

namespace kova {

/// Ignores SIGPIPE and SIGXFSZ, so that a disconnected client or a limit on file sizes does not end the process. Also
/// makes all threads share one memory arena, since an arena for each thread would need more memory. Call before the
/// first thread starts.
void prepareProcess();

/// The full path of this program, also if the file has been replaced since the start; empty if it is unknown.
std::string ownProgram();
/// Whether standard error is a terminal.
bool isTerminal();

} // namespace kova
