// The options of the agent, and its messages to the process that started it; shared by all platforms.
#pragma once

#include "app/LogFile.h"

#include <span>
#include <string>
#include <variant>

namespace kova {

inline constexpr int kExitFailed = 1;
inline constexpr int kExitWrongUsage = 2;
/// Another agent manages the session, or the socket cannot be created. A restart would fail as well.
inline constexpr int kExitSessionNotTaken = 5;

struct AgentOptions {
    LogEcho echo = LogEcho::none;
    LogLevel lowestLevel = LogLevel::note;
};

/// The options, or the exit code after `--help`, `--version` or an unknown argument, whose text was printed.
/// `arguments` without the program's own name.
std::variant<AgentOptions, int> readAgentOptions(std::span<char*> arguments, const char* help);

/// Writes to standard error and to the log.
void reportProblem(const AgentOptions& options, const std::string& text);

/// Opens the log "agent.log" in the folder; reports an error if it cannot be written.
void openAgentLog(const std::string& folder, const AgentOptions& options);

} // namespace kova
