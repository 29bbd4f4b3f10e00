#include "app/LogFile.h"

#include <spdlog/logger.h>
#include <spdlog/pattern_formatter.h>
#include <spdlog/sinks/rotating_file_sink.h>
#include <spdlog/sinks/stdout_sinks.h>

#include <filesystem>
#include <memory>
#include <utility>
#include <vector>

namespace kova {

namespace {

constexpr std::size_t kLargestFileBytes = 1024 * 1024;
constexpr std::size_t kOlderFiles = 1;

spdlog::level::level_enum levelOf(LogLevel level) {
    switch (level) {
    case LogLevel::detail:
        return spdlog::level::debug;
    case LogLevel::note:
        return spdlog::level::info;
    case LogLevel::warning:
        return spdlog::level::warn;
    case LogLevel::error:
        return spdlog::level::err;
    }
    return spdlog::level::info;
}

} // namespace

std::optional<std::string> openLog(const std::string& file, LogLevel lowest, LogEcho echo) {
    std::vector<spdlog::sink_ptr> sinks;
    std::optional<std::string> problem;
    try {
        sinks.push_back(std::make_shared<spdlog::sinks::rotating_file_sink_mt>(file, kLargestFileBytes, kOlderFiles));
        std::error_code ignored; // if this fails, the folder's mode still keeps other users out
        std::filesystem::permissions(file, std::filesystem::perms::owner_read | std::filesystem::perms::owner_write,
                                     ignored);
    } catch (const spdlog::spdlog_ex& error) {
        problem = error.what();
    }
    if (echo == LogEcho::standardError) sinks.push_back(std::make_shared<spdlog::sinks::stderr_sink_mt>());
    // Does not use the library's registry, which keeps a default logger for the terminal.
    const auto logger = std::make_shared<spdlog::logger>("kova-agent", sinks.begin(), sinks.end());
    logger->set_pattern("%Y-%m-%d %H:%M:%S.%e %l: %v");
    logger->set_level(levelOf(lowest));
    // Each line is flushed: lines are few, and the last ones before a crash matter most.
    logger->flush_on(levelOf(lowest));
    logger->set_error_handler([](const std::string&) {}); // a full disk ends the log, not the agent
    setLogWriter([logger](LogLevel level, const std::string& text) { logger->log(levelOf(level), text); }, lowest);
    return problem;
}

void closeLog() {
    setLogWriter({}, LogLevel::note);
}

} // namespace kova
