// Removes the arguments that a Mac adds to the user's arguments.
#pragma once

#include <vector>

namespace kova {

/// Removes "-psn_…", which the system may add when it opens an application for the first time. Also removes pairs
/// "-Name value", by which Xcode and "open --args" set a user default for this run. KOVA's options begin with two
/// hyphens.
std::vector<char*> withoutSystemArguments(std::vector<char*> arguments);

} // namespace kova
