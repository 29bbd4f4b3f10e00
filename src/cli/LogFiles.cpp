#include "cli/LogFiles.h"

#include "cli/DocumentFile.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <utility>
#include <variant>

namespace kova::cli {

namespace {

constexpr std::size_t kLargestLog = 16 * 1024 * 1024; // bytes, far more than the agent keeps
constexpr std::size_t kTimeLength = 23;

constexpr std::array<std::pair<std::string_view, LogSeverity>, 4> kWordsInFile = {{{"debug", LogSeverity::detail},
                                                                                   {"info", LogSeverity::note},
                                                                                   {"warning", LogSeverity::warning},
                                                                                   {"error", LogSeverity::error}}};

/// The line with its time and severity; absent unless it begins as in "2024-02-29 12:34:56.789 info: text".
std::optional<LogLine> parsedLine(std::string_view text) {
    constexpr std::string_view kShape = "0000-00-00 00:00:00.000 ";
    if (text.size() < kShape.size()) return std::nullopt;
    for (std::size_t i = 0; i < kShape.size(); ++i) {
        const bool isDigit = text[i] >= '0' && text[i] <= '9';
        if (kShape[i] == '0' ? !isDigit : text[i] != kShape[i]) return std::nullopt;
    }
    const std::string_view rest = text.substr(kShape.size());
    for (const auto& [word, severity] : kWordsInFile) {
        if (rest.starts_with(word) && rest.substr(word.size()).starts_with(": ")) {
            return LogLine{std::string(text.substr(0, kTimeLength)), severity, std::string(text)};
        }
    }
    return std::nullopt;
}

std::string folderOfLog() {
    const auto environment = [](const char* name) {
        const char* value = std::getenv(name);
        return std::string(value ? value : "");
    };
#if defined(__APPLE__)
    return environment("HOME") + "/Library/Logs/KOVA";
#else
    if (const auto state = environment("XDG_STATE_HOME"); state.starts_with('/')) return state + "/kova";
    return environment("HOME") + "/.local/state/kova";
#endif
}

} // namespace

std::optional<LogSeverity> logSeverityNamed(std::string_view name) {
    if (name == "detail") return LogSeverity::detail;
    if (name == "note") return LogSeverity::note;
    if (name == "warning") return LogSeverity::warning;
    if (name == "error") return LogSeverity::error;
    return std::nullopt;
}

std::vector<LogLine> LogReader::take(std::string_view text) {
    std::vector<LogLine> lines;
    incompleteLine_ += text;
    std::size_t at = 0;
    for (auto end = incompleteLine_.find('\n'); end != std::string::npos; end = incompleteLine_.find('\n', at)) {
        const std::string_view line = std::string_view(incompleteLine_).substr(at, end - at);
        if (auto parsed = parsedLine(line)) {
            last_ = *std::move(parsed);
        } else {
            last_.text = line;
        }
        if (last_.severity >= least_) lines.push_back(last_);
        at = end + 1;
    }
    incompleteLine_.erase(0, at);
    return lines;
}

std::string logFile() {
    return folderOfLog() + "/agent.log";
}

std::string olderLogFile() {
    return folderOfLog() + "/agent.1.log";
}

std::optional<std::vector<LogLine>> readLog(LogSeverity least) {
    LogReader reader(least);
    std::vector<LogLine> lines;
    bool isThere = false;
    for (const std::string& file : {olderLogFile(), logFile()}) {
        const auto text = readFile(file, kLargestLog);
        if (!text) continue;
        isThere = true;
        for (LogLine& line : reader.take(*text)) lines.push_back(std::move(line));
    }
    return isThere ? std::optional(std::move(lines)) : std::nullopt;
}

} // namespace kova::cli
