// What one needs when something is wrong: the checks, the log, and a report with all of it for whoever is to find out.
#pragma once

#include "cli/Arguments.h"

namespace kova::cli {

ExitCode runDoctor(const Arguments& arguments);
ExitCode runLog(const Arguments& arguments);
ExitCode runBugReport(const Arguments& arguments);

} // namespace kova::cli
