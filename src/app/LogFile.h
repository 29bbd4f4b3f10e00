// Where the log goes: a file that starts anew when it has grown, with one older file kept, and on request the terminal.
#pragma once

#include "support/Log.h"

#include <optional>
#include <string>

namespace kova {

enum class LogEcho { none, standardError };

/// Sends the log to the file, whose folder exists. Gives what is wrong when the file cannot be written; the terminal
/// gets its lines all the same.
std::optional<std::string> openLog(const std::string& file, LogLevel lowest, LogEcho echo);
/// Writes out what is left and silences the log.
void closeLog();

} // namespace kova
