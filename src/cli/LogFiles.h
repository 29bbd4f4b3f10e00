// Reads the files of the agent's log. The command line reads them without the agent, which may not run.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kova::cli {

/// "debug", "info", "warning" and "error" in the file.
enum class LogSeverity { detail, note, warning, error };

std::optional<LogSeverity> logSeverityNamed(std::string_view name);

struct LogLine {
    std::string time; // local: "2024-02-29 12:34:56.789"
    LogSeverity severity = LogSeverity::note;
    std::string text; // as it is in the file, without the newline
};

/// Splits text into log lines. A line without the usual beginning belongs to the line before.
class LogReader {
  public:
    explicit LogReader(LogSeverity least) : least_(least) {}
    /// The complete lines of at least the requested severity.
    std::vector<LogLine> take(std::string_view text);

  private:
    LogSeverity least_;
    std::string rest_; // an incomplete line
    LogLine last_;
};

/// Where the agent keeps its log; the file may be missing.
std::string logFile();
/// The older file of the rotation.
std::string olderLogFile();
/// The whole log, the oldest line first; absent when there is none.
std::optional<std::vector<LogLine>> readLog(LogSeverity least);

} // namespace kova::cli
