// What the agent tells about its own work, for whoever looks into a problem. Titles of windows are private: they are
// told at the level `detail` only, which nobody gets without asking for it.
#pragma once

#include <functional>
#include <string>

namespace kova {

enum class LogLevel { detail, note, warning, error };

using LogWriter = std::function<void(LogLevel, const std::string&)>;

/// Everything logged from `lowest` on goes to `writer`, which is called from any thread; an empty one silences the log,
/// as at the start. Call it while no other thread logs.
void setLogWriter(LogWriter writer, LogLevel lowest);

/// False when a text of this level would go nowhere, so that nobody need put it together.
bool isLogged(LogLevel level);
/// One line of text. Any thread.
void log(LogLevel level, const std::string& text);

} // namespace kova
