// The agent's log, for diagnosis. Titles of windows are private: they are logged only at the level `detail`, which is
// off unless the user turns it on.
#pragma once

#include <functional>
#include <string>

namespace kova {

enum class LogLevel { detail, note, warning, error };

using LogWriter = std::function<void(LogLevel, const std::string&)>;

/// From now on passes lines of the level `lowest` and above to `writer`, which is called from any thread. An empty
/// `writer` turns the log off, as at the start. Call while no other thread logs.
void setLogWriter(LogWriter writer, LogLevel lowest);

/// False when a text of this level would not be written, so that it need not be composed.
bool isLogged(LogLevel level);
/// One line of text. Any thread.
void log(LogLevel level, const std::string& text);

} // namespace kova
