// The verbs that write and read a file: the agent never sees it, only what is in it.
#pragma once

#include "cli/Verbs.h"

namespace kova::cli {

ExitCode runExport(const Verb& verb, const Arguments& arguments);
ExitCode runImport(const Verb& verb, const Arguments& arguments);

} // namespace kova::cli
