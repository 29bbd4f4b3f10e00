// The agent's command-line options, its exit codes, and its messages on standard error. All platforms use them.
#pragma once

#include "app/LogFile.h"

#include <span>
#include <string>
#include <variant>

namespace kova {

inline constexpr int kExitFailed = 1;
inline constexpr int kExitWrongUsage = 2;
/// Another agent manages the session, or the socket cannot be created. A restart would fail in the same way.
inline constexpr int kExitSessionNotTaken = 5;

struct AgentOptions {
    LogEcho echo = LogEcho::none;
    LogLevel lowestLevel = LogLevel::note;
};

/// Returns the options. After `--help`, `--version` or an unknown argument prints a text and returns the exit code.
/// `arguments` does not contain the program's name.
std::variant<AgentOptions, int> readAgentOptions(std::span<char*> arguments, const char* help);

/// Writes the text to the log, and to standard error unless the log is written there.
void reportProblem(const AgentOptions& options, const std::string& text);

/// Opens the log "agent.log" in the folder; reports an error if it cannot be written.
void openAgentLog(const std::string& folder, const AgentOptions& options);

} // namespace kova
