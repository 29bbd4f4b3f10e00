// Diagnosis: the checks, the log, and a report with both for developers.
#pragma once

#include "cli/Verbs.h"

namespace kova::cli {

ExitCode runDoctor(const Verb& verb, const Arguments& arguments);
ExitCode runLog(const Verb& verb, const Arguments& arguments);
ExitCode runBugReport(const Verb& verb, const Arguments& arguments);

} // namespace kova::cli
