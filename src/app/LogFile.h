// Writes the log to a file that is rotated at a size limit, with one older file, and optionally to the terminal.
#pragma once

#include "support/Log.h"

#include <optional>
#include <string>

namespace kova {

enum class LogEcho { none, standardError };

/// Sends the log to the file, whose folder must exist. Returns the error if the file cannot be written; with
/// `LogEcho::standardError` the lines still go to the terminal.
std::optional<std::string> openLog(const std::string& file, LogLevel lowest, LogEcho echo);
/// Flushes the log; later lines are dropped.
void closeLog();

} // namespace kova
