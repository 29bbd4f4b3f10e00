// `export` writes a file and `import` reads one. The agent gets only the text of the file, never its path.
#pragma once

#include "cli/Verbs.h"

namespace kova::cli {

ExitCode runExport(const Verb& verb, const Arguments& arguments);
ExitCode runImport(const Verb& verb, const Arguments& arguments);

} // namespace kova::cli
