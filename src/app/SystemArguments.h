// Arguments that a Mac adds to those of the user.
#pragma once

#include <vector>

namespace kova {

/// Removes "-psn_…", which the system may add when it opens an application for the first time, and pairs "-Name value",
/// with which Xcode and "open --args" set a user default for this run. KOVA's own arguments begin with two hyphens.
std::vector<char*> withoutSystemArguments(std::vector<char*> arguments);

} // namespace kova
