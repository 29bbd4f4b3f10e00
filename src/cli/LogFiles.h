// Reads the files of the agent's log. This does not need the agent, so the log can be read when no agent runs.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kova::cli {

/// The file names these levels "debug", "info", "warning" and "error".
enum class LogSeverity { detail, note, warning, error };

std::optional<LogSeverity> logSeverityNamed(std::string_view name);

struct LogLine {
    std::string time; // local: "2024-02-29 12:34:56.789"
    LogSeverity severity = LogSeverity::note;
    std::string text; // as it is in the file, without the newline
};

/// Splits text into log lines. A line that does not begin with a time and a level gets both from the line before it.
class LogReader {
  public:
    explicit LogReader(LogSeverity least) : least_(least) {}
    /// Returns the lines that `text` completes, if they have at least the requested severity.
    std::vector<LogLine> take(std::string_view text);

  private:
    LogSeverity least_;
    std::string incompleteLine_;
    LogLine last_;
};

/// The path of the agent's log. The file may not exist.
std::string logFile();
/// The older file of the rotation.
std::string olderLogFile();
/// The whole log, the oldest line first; absent when there is none.
std::optional<std::vector<LogLine>> readLog(LogSeverity least);

} // namespace kova::cli
