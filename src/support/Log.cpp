#include "support/Log.h"

#include <utility>

namespace kova {

namespace {

LogWriter currentWriter;
LogLevel lowestLevel = LogLevel::note;

} // namespace

void setLogWriter(LogWriter writer, LogLevel lowest) {
    currentWriter = std::move(writer);
    lowestLevel = lowest;
}

bool isLogged(LogLevel level) {
    return currentWriter && level >= lowestLevel;
}

void log(LogLevel level, const std::string& text) {
    if (isLogged(level)) currentWriter(level, text);
}

} // namespace kova
