#include "cli/DiagnosisVerbs.h"

#include "cli/DocumentFile.h"
#include "cli/LogFiles.h"
#include "cli/Output.h"
#include "cli/Pseudonyms.h"
#include "cli/Streams.h"
#include "support/Version.h"

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

constexpr std::size_t kUsualLines = 50;
constexpr std::chrono::milliseconds kLook{200}; // for new lines of the log
constexpr std::chrono::minutes kReportedMinutes{15};
constexpr std::size_t kMostReportedLines = 2000;
constexpr std::size_t kLeastReportedLines = 50;
constexpr std::size_t kLargestPreferences = 16 * 1024 * 1024;

using Answer = std::variant<json, Trouble>;

Answer askAgent(std::string_view method) {
    auto connected = Agent::connect();
    if (auto* trouble = std::get_if<Trouble>(&connected)) return std::move(*trouble);
    return std::get<Agent>(connected).ask(method, json::object());
}

void addCheck(json& report, const char* subject, const char* verdict, const std::string& text) {
    report["checks"].push_back({{"subject", subject}, {"verdict", verdict}, {"text", text}});
}

/// Takes over what the agent has found, and compares the versions.
void addFindings(json& report, const Agent& agent, const json& found) {
    const std::string version = found.at("version");
    const bool isSame = version == KOVA_VERSION;
    report["version"] = version;
    report["isHealthy"] = found.at("isHealthy").get<bool>() && isSame;
    addCheck(report, "agent", "fine", "It answers at " + agent.socketPath() + ".");
    for (const json& line : found.at("checks")) report["checks"].push_back(line);
    addCheck(report, "versions", isSame ? "fine" : "wrong",
             "The agent is " + version + ", the command line " KOVA_VERSION +
                 (isSame ? "." : "; end the agent with “kova quit” and start it anew."));
}

/// The agent's checks, and what only a client can tell.
json examine() {
    json report = {{"isHealthy", false}, {"version", nullptr}, {"checks", json::array()}};
    auto connected = Agent::connect();
    auto answer = std::holds_alternative<Agent>(connected) ? std::get<Agent>(connected).ask("doctor", json::object())
                                                           : Answer(std::get<Trouble>(connected));
    if (const auto* trouble = std::get_if<Trouble>(&answer)) {
        std::string text = trouble->message;
        std::replace(text.begin(), text.end(), '\n', ' ');
        addCheck(report, "agent", "wrong", text);
        addCheck(report, "versions", "note", "The command line is " KOVA_VERSION "; no agent could be asked.");
        return report;
    }
    try {
        addFindings(report, std::get<Agent>(connected), std::get<json>(answer));
    } catch (const json::exception&) {
        addCheck(report, "versions", "wrong",
                 "The agent answers as another version does, the command line is " KOVA_VERSION
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
    return out.empty() || write(STDOUT_FILENO, out);
}

/// A file that grows, until it is set aside for another one of its name.
class FollowedFile {
  public:
    explicit FollowedFile(std::string path) : path_(std::move(path)) {}
    ~FollowedFile() { closeFile(); }
    FollowedFile(const FollowedFile&) = delete;
    FollowedFile& operator=(const FollowedFile&) = delete;

    /// What has been added since.
    std::string more() {
        std::string text = readOn();
        struct stat now {};
        if (stat(path_.c_str(), &now) == 0 && (now.st_ino != opened_.st_ino || now.st_dev != opened_.st_dev)) {
            closeFile();
            text += readOn();
        }
        return text;
    }

  private:
    std::string readOn() {
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
    (void)uname(&system); // not its name in the network
    std::string text = std::string("kova ") + KOVA_VERSION + "\n" + system.sysname + " " + system.release + " " +
                       system.machine + "\n";
    for (const char* variable : {"XDG_CURRENT_DESKTOP", "XDG_SESSION_TYPE", "DISPLAY", "WAYLAND_DISPLAY", "LANG"}) {
        text += std::string(variable) + "=" + environment(variable) + "\n";
    }
    return text;
}

/// Empty where they are in no file.
std::string preferencesFile() {
#if defined(__APPLE__)
    return {};
#else
    const std::string configured = environment("XDG_CONFIG_HOME");
    const std::string folder = configured.starts_with('/') ? configured : environment("HOME") + "/.config";
    return folder + "/kova/preferences.json";
#endif
}

std::string preferencesSection(Pseudonyms& pseudonyms) {
    const std::string file = preferencesFile();
    if (file.empty()) return "They are in the user's defaults and are left out.\n";
    const auto read = readFile(file, kLargestPreferences);
    if (const auto* problem = std::get_if<FileProblem>(&read)) return problem->message + "\n";
    const auto preferences = json::parse(std::get<std::string>(read), nullptr, false);
    if (preferences.is_discarded()) return "They cannot be read.\n";
    return asText(pseudonyms.applied(preferences), 2);
}

/// Detail is left out: names and titles are among it.
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

/// A new file for nobody else's eyes; why not, when it could not be written.
std::optional<std::string> writeNewFile(const std::string& path, std::string_view text) {
    const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, S_IRUSR | S_IWUSR);
    if (file < 0) {
        return path + (errno == EEXIST ? " is there already; it is not overwritten"
                                       : std::string(": ") + std::strerror(errno));
    }
    while (!text.empty()) {
        const ssize_t length = ::write(file, text.data(), text.size());
        if (length < 0 && errno == EINTR) continue;
        if (length <= 0) break;
        text.remove_prefix(static_cast<std::size_t>(length));
    }
    const bool isWritten = close(file) == 0 && text.empty();
    if (isWritten) return std::nullopt;
    const std::string problem = path + ": " + std::strerror(errno);
    unlink(path.c_str());
    return problem;
}

} // namespace

ExitCode runDoctor(const Arguments& arguments) {
    const json report = examine();
    const ExitCode printed = print(arguments.json ? asText(report, 2) : printChecks(report.at("checks")));
    return report.at("isHealthy").get<bool>() ? printed : ExitCode::refused;
}

ExitCode runLog(const Arguments& arguments) {
    const auto least = logSeverityNamed(arguments.level.value_or("detail")).value_or(LogSeverity::detail);
    const std::size_t count = arguments.lines ? static_cast<std::size_t>(*arguments.lines) : kUsualLines;
    if (!arguments.follow) {
        auto lines = readLog(least);
        if (!lines) return end({ExitCode::refused, "There is no log at " + logFile() + "."});
        return print(lastOf(*std::move(lines), count), arguments) ? ExitCode::done : endUnwritten();
    }
    LogReader reader(least);
    FollowedFile file(logFile());
    bool isHeard = print(lastOf(reader.take(file.more()), count), arguments);
    while (isHeard) {
        std::this_thread::sleep_for(kLook);
        isHeard = print(reader.take(file.more()), arguments);
    }
    return endUnwritten();
}

ExitCode runBugReport(const Arguments& arguments) {
    Pseudonyms pseudonyms;
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
        const auto answer = askAgent(method);
        const auto* trouble = std::get_if<Trouble>(&answer);
        add(title, trouble ? trouble->message + "\n" : asText(pseudonyms.applied(std::get<json>(answer)), 2));
    }
    add("Preferences", preferencesSection(pseudonyms));
    add("Log", logSection());
    const std::string path = arguments.file.value_or("");
    if (const auto problem = writeNewFile(path, text)) return end({ExitCode::refused, *problem});
    return print(arguments.json ? asText(json{{"file", path}}, 2)
                                : "The report is in " + path + ". Read it before you pass it on.\n");
}

} // namespace kova::cli
