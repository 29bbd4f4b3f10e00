// What the agent's process asks of the system before it does anything else.
#pragma once

#include <string>

namespace kova {

/// A client that goes away while it is written to must not end the process, nor must a limit on the size of files. The
/// few threads share one pool of memory, since a pool each costs more than they ever wait for one another. Before the
/// first thread starts.
void prepareProcess();

/// The full path of this program, also when the file has been replaced since; empty when it cannot be known.
std::string ownProgram();
/// Whether a person reads what is written to the standard error.
bool isTerminal();

} // namespace kova
