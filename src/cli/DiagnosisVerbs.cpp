#include "cli/DiagnosisVerbs.h"

#include "cli/DocumentFile.h"
#include "cli/LogFiles.h"
#include "cli/Output.h"
#include "cli/Redactor.h"
#include "cli/Streams.h"
#include "support/Version.h"
#include "support/posix/AtomicFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/utsname.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <thread>
#include <utility>

namespace kova::cli {

namespace {

using nlohmann::json;

constexpr int kDefaultLines = 50;
constexpr std::chrono::milliseconds kLogPollInterval{200};
constexpr std::chrono::minutes kReportedMinutes{15};
constexpr std::size_t kMostReportedLines = 2000;
constexpr std::size_t kLeastReportedLines = 50;
constexpr std::size_t kLargestPreferences = 16 * 1024 * 1024;

void addCheck(json& report, const char* subject, const char* verdict, const std::string& text) {
    report["checks"].push_back({{"subject", subject}, {"verdict", verdict}, {"text", text}});
}

/// Adds the agent's findings to the report, and compares the versions.
void addFindings(json& report, const Agent& agent, const json& found) {
    const std::string version = found.at("version");
    const bool isSame = version == KOVA_VERSION;
    report["version"] = version;
    report["isHealthy"] = found.at("isHealthy").get<bool>() && isSame;
    addCheck(report, "agent", "fine", "It listens at " + agent.socketPath() + ".");
    for (const json& line : found.at("checks")) report["checks"].push_back(line);
    addCheck(report, "versions", isSame ? "fine" : "wrong",
             "The agent is " + version + ", the command line " KOVA_VERSION +
                 (isSame ? "." : "; end the agent with “kova quit” and start it anew."));
}

/// The agent's checks, and the checks that only a client can make.
json examine() {
    json report = {{"isHealthy", false}, {"version", nullptr}, {"checks", json::array()}};
    auto agent = Agent::connect();
    const auto answer = agent ? agent->ask("doctor", json::object()) : agent.error();
    if (!answer) {
        std::string text = answer.error().message;
        std::replace(text.begin(), text.end(), '\n', ' ');
        addCheck(report, "agent", "wrong", text);
        addCheck(report, "versions", "note", "The command line is " KOVA_VERSION "; no agent could be asked.");
        return report;
    }
    try {
        addFindings(report, *agent, *answer);
    } catch (const json::exception&) {
        addCheck(report, "versions", "wrong",
                 "The agent has another version, the command line is " KOVA_VERSION
                 "; end the agent with “kova quit” and start it anew.");
    }
    return report;
}

bool print(const std::vector<LogLine>& lines, const Arguments& arguments) {
    std::string out;
    for (const LogLine& line : lines) {
        if (arguments.json) {
            out += json{{"time", line.time}, {"text", line.text}}.dump(-1, ' ', false, json::error_handler_t::replace) +
                   "\n";
        } else {
            out += printableLines(line.text);
        }
    }
    return out.empty() || writeAll(STDOUT_FILENO, out);
}

/// Follows a file that grows, and, after it is replaced, the new file of the same name.
class FollowedFile {
  public:
    explicit FollowedFile(std::string path) : path_(std::move(path)) {}
    ~FollowedFile() { closeFile(); }
    FollowedFile(const FollowedFile&) = delete;
    FollowedFile& operator=(const FollowedFile&) = delete;

    /// The text that was added since the last call.
    std::string more() {
        std::string text = readToEnd();
        struct stat now {};
        if (stat(path_.c_str(), &now) == 0 && (now.st_ino != opened_.st_ino || now.st_dev != opened_.st_dev)) {
            closeFile();
            text += readToEnd();
        }
        return text;
    }

  private:
    std::string readToEnd() {
        if (file_ < 0) {
            file_ = open(path_.c_str(), O_RDONLY | O_CLOEXEC);
            if (file_ >= 0) (void)fstat(file_, &opened_);
        }
        std::string text;
        char piece[4096];
        while (file_ >= 0) {
            const ssize_t length = read(file_, piece, sizeof piece);
            if (length <= 0) break;
            text.append(piece, static_cast<std::size_t>(length));
        }
        return text;
    }
    void closeFile() {
        if (file_ >= 0) close(std::exchange(file_, -1));
    }

    std::string path_;
    int file_ = -1;
    struct stat opened_ {};
};

std::vector<LogLine> lastOf(std::vector<LogLine> lines, std::size_t count) {
    if (lines.size() > count) lines.erase(lines.begin(), lines.end() - static_cast<std::ptrdiff_t>(count));
    return lines;
}

std::string localTimeBefore(std::chrono::seconds ago) {
    const auto then = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now() - ago);
    tm parts{};
    localtime_r(&then, &parts);
    char text[32];
    return {text, strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", &parts)};
}

std::string environment(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

std::string withoutHome(std::string text) {
    const std::string home = environment("HOME");
    if (home.size() < 2) return text;
    for (auto at = text.find(home); at != std::string::npos; at = text.find(home, at + 1)) {
        text.replace(at, home.size(), "~");
    }
    return text;
}

std::string systemSection() {
    utsname system{};
    (void)uname(&system); // the report leaves out the network name
    std::string text = std::string("kova ") + KOVA_VERSION + "\n" + system.sysname + " " + system.release + " " +
                       system.machine + "\n";
    for (const char* variable : {"XDG_CURRENT_DESKTOP", "XDG_SESSION_TYPE", "DISPLAY", "WAYLAND_DISPLAY", "LANG"}) {
        text += std::string(variable) + "=" + environment(variable) + "\n";
    }
    return text;
}

/// Empty on systems that do not store preferences in a file.
std::string preferencesFile() {
#if defined(__APPLE__)
    return {};
#else
    const std::string configured = environment("XDG_CONFIG_HOME");
    const std::string folder = configured.starts_with('/') ? configured : environment("HOME") + "/.config";
    return folder + "/kova/preferences.json";
#endif
}

std::string preferencesSection(Redactor& redactor) {
    const std::string file = preferencesFile();
    if (file.empty()) return "They are in the user's defaults and are left out.\n";
    const auto read = readFile(file, kLargestPreferences);
    if (!read) return read.error().message + "\n";
    const auto preferences = json::parse(*read, nullptr, false);
    if (preferences.is_discarded()) return "They cannot be read.\n";
    return asText(redactor.applied(preferences), 2);
}

/// Leaves out lines of the level “detail”, which may contain names and titles.
std::string logSection() {
    const auto lines = readLog(LogSeverity::note);
    if (!lines) return "There is none.\n";
    const std::string since = localTimeBefore(kReportedMinutes);
    const auto recent =
        std::count_if(lines->begin(), lines->end(), [&](const auto& line) { return line.time >= since; });
    const auto count = std::clamp(static_cast<std::size_t>(recent), kLeastReportedLines, kMostReportedLines);
    std::string text;
    for (const LogLine& line : lastOf(*lines, count)) text += line.text + "\n";
    return text;
}

/// Writes a new file that only the user may read. Returns the reason if the file could not be written.
std::optional<std::string> writeNewFile(const std::string& path, std::string_view text) {
    const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, S_IRUSR | S_IWUSR);
    if (file < 0) {
        return path + (errno == EEXIST ? " is there already; it is not overwritten"
                                       : std::string(": ") + std::strerror(errno));
    }
    const bool isComplete = writeAll(file, text);
    if (close(file) == 0 && isComplete) return std::nullopt;
    const std::string problem = path + ": " + std::strerror(errno);
    unlink(path.c_str());
    return problem;
}

} // namespace

ExitCode runDoctor(const Verb&, const Arguments& arguments) {
    const json report = examine();
    const ExitCode printed = print(arguments.json ? asText(report, 2) : printChecks(report.at("checks")));
    return report.at("isHealthy").get<bool>() ? printed : ExitCode::refused;
}

ExitCode runLog(const Verb&, const Arguments& arguments) {
    const auto least = logSeverityNamed(arguments.text("level", "detail")).value_or(LogSeverity::detail);
    const std::size_t count = static_cast<std::size_t>(arguments.number("lines").value_or(kDefaultLines));
    if (!arguments.has("follow")) {
        auto lines = readLog(least);
        if (!lines) return fail({ExitCode::refused, "There is no log at " + logFile() + "."});
        return print(lastOf(*std::move(lines), count), arguments) ? ExitCode::done : failUnwritten();
    }
    LogReader reader(least);
    FollowedFile file(logFile());
    bool isWritten = print(lastOf(reader.take(file.more()), count), arguments);
    while (isWritten) {
        std::this_thread::sleep_for(kLogPollInterval);
        isWritten = print(reader.take(file.more()), arguments);
    }
    return failUnwritten();
}

ExitCode runBugReport(const Verb&, const Arguments& arguments) {
    Redactor redactor;
    std::string text =
        "KOVA bug report, " + localTimeBefore(std::chrono::seconds(0)) +
        "\nTitles and other texts of yours are replaced: the same text by the same word, in this report only.\n";
    const auto add = [&text](const char* title, const std::string& section) {
        text += std::string("\n== ") + title + "\n" + withoutHome(section);
    };
    add("System", systemSection());
    const json report = examine();
    add("Checks", printChecks(report.at("checks")));
    for (const auto& [title, method] : {std::pair{"Status", "status"}, std::pair{"State", "query.state"}}) {
        const auto answer = askAgent(method, json::object());
        add(title, answer ? asText(redactor.applied(*answer), 2) : answer.error().message + "\n");
    }
    add("Preferences", preferencesSection(redactor));
    add("Log", logSection());
    const std::string path = arguments.text("file");
    if (const auto problem = writeNewFile(path, text)) return fail({ExitCode::refused, *problem});
    return print(arguments.json ? asText(json{{"file", path}}, 2)
                                : "The report is in " + path + ". Read it before you pass it on.\n");
}

} // namespace kova::cli
