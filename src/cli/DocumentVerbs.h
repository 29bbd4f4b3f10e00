// The verbs that write and read a file. The agent gets its contents, never the file.
#pragma once

#include "cli/Verbs.h"

namespace kova::cli {

ExitCode runExport(const Verb& verb, const Arguments& arguments);
ExitCode runImport(const Verb& verb, const Arguments& arguments);

} // namespace kova::cli
