// Arguments that a Mac adds to those of the user.
#pragma once

#include <vector>

namespace kova {

/// Without "-psn_…", which the system may add when it opens an application for the first time, and without pairs
/// "-Name value", which set a default of the user for this run, as Xcode and "open --args" do. Arguments of KOVA begin
/// with two hyphens.
std::vector<char*> withoutSystemArguments(std::vector<char*> arguments);

} // namespace kova
