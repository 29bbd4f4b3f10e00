#include "platform/linux/AutostartEntry.h"

#include "platform/linux/DesktopEntries.h"
#include "platform/linux/ExecLine.h"
#include "support/posix/AtomicFile.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <fstream>
#include <iterator>
#include <string_view>
#include <utility>
#include <vector>

namespace kova {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view kFileName = "kova-agent.desktop";
constexpr const char* kUnit = "kova-agent.service";
constexpr std::string_view kGroup = "[Desktop Entry]";
constexpr const char* kHidden = "Hidden";
constexpr const char* kEnabled = "X-GNOME-Autostart-enabled";

std::optional<std::string> contents(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    if (!stream) return std::nullopt;
    return std::string(std::istreambuf_iterator<char>(stream), {});
}

std::string_view trimmed(std::string_view text) {
    while (!text.empty() && std::string_view(" \t\r").find(text.front()) != std::string_view::npos) {
        text.remove_prefix(1);
    }
    while (!text.empty() && std::string_view(" \t\r").find(text.back()) != std::string_view::npos)
        text.remove_suffix(1);
    return text;
}

/// A line of an entry.
struct Line {
    std::string text;
    std::string key; // empty for a group's heading, a comment and an empty line
    std::string value;
    bool isOfEntry = false; // in the group [Desktop Entry]
};

std::vector<Line> linesOf(std::string_view text) {
    std::vector<Line> lines;
    bool isOfEntry = false;
    while (!text.empty()) {
        const auto end = std::min(text.find('\n'), text.size());
        Line line{std::string(text.substr(0, end)), {}, {}, isOfEntry};
        const std::string_view content = trimmed(line.text);
        if (content.starts_with('[')) {
            line.isOfEntry = isOfEntry = content == kGroup;
        } else if (const auto equals = content.find('='); !content.starts_with('#') && equals != content.npos) {
            line.key = trimmed(content.substr(0, equals));
            line.value = trimmed(content.substr(equals + 1));
        }
        lines.push_back(std::move(line));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return lines;
}

std::optional<std::string> valueOf(const std::vector<Line>& lines, std::string_view key) {
    for (const Line& line : lines) {
        if (line.isOfEntry && line.key == key) return line.value;
    }
    return std::nullopt;
}

/// The text with the key set to the value, or without the key if `value` is absent. Other lines do not change.
std::string withValue(const std::string& text, std::string_view key, const std::optional<std::string>& value) {
    std::vector<Line> lines = linesOf(text);
    std::erase_if(lines, [&](const Line& line) { return line.isOfEntry && line.key == key; });
    if (value) {
        auto group = std::find_if(lines.begin(), lines.end(), [](const Line& line) { return line.isOfEntry; });
        if (group == lines.end()) {
            lines.push_back({std::string(kGroup), {}, {}, true});
            group = std::prev(lines.end());
        }
        lines.insert(std::next(group), {std::string(key) + "=" + *value, {}, {}, true});
    }
    std::string out;
    for (const Line& line : lines) out += line.text + "\n";
    return out;
}

/// The text, escaped to be the value of a key.
std::string keyValue(const std::string& text) {
    std::string value;
    for (const char c : text) value += c == '\\' ? std::string("\\\\") : std::string(1, c);
    return value;
}

/// The program, quoted to be a word of an Exec line.
std::string execWord(const std::string& program) {
    constexpr std::string_view kPlain = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_-+./,:@";
    if (program.find_first_not_of(kPlain) == std::string::npos) return program;
    std::string word = "\"";
    for (const char c : program) {
        if (c == '%') word += '%';
        // Within quotes the character needs a backslash, and in the value of a key the backslash needs another one.
        if (c == '"' || c == '`' || c == '$') word += "\\\\";
        if (c == '\\') word += "\\\\\\";
        word += c;
    }
    return word + "\"";
}

bool isSwitchedOff(const std::vector<Line>& lines) {
    return valueOf(lines, kHidden) == "true" || valueOf(lines, kEnabled) == "false";
}

/// Whether the program that the entry starts exists.
bool isStartable(const fs::path& file) {
    const auto entry = readDesktopEntry(file.string(), "");
    if (!entry) return false;
    if (!entry->tryExec.empty() && !findProgram(entry->tryExec)) return false;
    const auto words = wordsOfExecLine(entry->execLine, {});
    const auto* command = std::get_if<std::vector<std::string>>(&words);
    return command && !command->empty() && findProgram(command->front());
}

} // namespace

AutostartEntry::AutostartEntry(const XdgFolders& folders, std::string program, fs::path systemUnits) :
    entry_(folders.configHome / "autostart" / kFileName), unitFolders_{folders.configHome / "systemd/user",
                                                                       std::move(systemUnits)},
    program_(std::move(program)) {
    for (const auto& folder : folders.configFolders) sharedFolders_.push_back(folder / "autostart");
}

LaunchAtLoginStatus AutostartEntry::status() const {
    if (isUnitEnabled()) return LaunchAtLoginStatus::enabled;
    std::error_code ignored;
    const auto file = fs::exists(entry_, ignored) ? std::optional(entry_) : sharedEntry();
    if (!file) return LaunchAtLoginStatus::notRegistered;
    if (isSwitchedOff(linesOf(contents(*file).value_or("")))) return LaunchAtLoginStatus::notRegistered;
    return isStartable(*file) ? LaunchAtLoginStatus::enabled : LaunchAtLoginStatus::notFound;
}

std::optional<std::string> AutostartEntry::registerAtLogin() {
    if (status() == LaunchAtLoginStatus::enabled) return std::nullopt;
    if (program_.empty()) return "the path of kova-agent is not known";
    const auto present = contents(entry_);
    if (!present || isAsWritten(*present)) return replace(writtenEntry());
    // Enables an entry that the user disabled or edited; other lines do not change.
    std::string text = withValue(withValue(*present, kHidden, std::nullopt), kEnabled, std::nullopt);
    if (!isStartable(entry_)) {
        text = withValue(withValue(text, "TryExec", keyValue(program_)), "Exec", execWord(program_));
    }
    return replace(text);
}

std::optional<std::string> AutostartEntry::unregisterAtLogin() {
    std::optional<std::string> problem;
    const auto present = contents(entry_);
    const auto shared = sharedEntry();
    if (shared || (present && !isAsWritten(*present))) {
        // If the file were removed, the system-wide entry would apply, or the lines that the user added would be lost.
        const std::string text = present ? *present : contents(*shared).value_or("");
        problem = replace(withValue(text, kHidden, "true"));
    } else if (present) {
        std::error_code error;
        if (!fs::remove(entry_, error) && error) problem = entry_.string() + ": " + error.message();
    }
    if (problem || !isUnitEnabled()) return problem;
    return std::string("the systemd unit ") + kUnit + " starts KOVA; “systemctl --user disable " + kUnit +
           "” ends that";
}

std::string AutostartEntry::guidance() const {
    if (isUnitEnabled()) {
        return std::string("The systemd unit ") + kUnit + " starts KOVA; “systemctl --user disable " + kUnit +
               "” ends that.";
    }
    const auto present = contents(entry_);
    const auto shared = sharedEntry();
    const std::string file = present || !shared ? entry_.string() : shared->string();
    switch (status()) {
    case LaunchAtLoginStatus::enabled:
        return "The autostart entry " + file + " starts KOVA.";
    case LaunchAtLoginStatus::notFound:
        return "The autostart entry " + file + " names a program that does not exist.";
    case LaunchAtLoginStatus::notRegistered:
    case LaunchAtLoginStatus::requiresApproval:
        break;
    }
    if (present || shared) return "The autostart entry " + file + " is switched off.";
    return "There is no autostart entry " + file + ".";
}

bool AutostartEntry::isUnitEnabled() const {
    std::error_code ignored;
    for (const fs::path& folder : unitFolders_) {
        if (fs::read_symlink(folder / kUnit, ignored) == "/dev/null") return false; // masked
        for (const char* target : {"graphical-session.target.wants", "default.target.wants", "xsession.target.wants"}) {
            if (fs::is_symlink(folder / target / kUnit, ignored)) return true;
        }
    }
    return false;
}

std::optional<fs::path> AutostartEntry::sharedEntry() const {
    std::error_code ignored;
    for (const fs::path& folder : sharedFolders_) {
        if (fs::exists(folder / kFileName, ignored)) return folder / kFileName;
    }
    return std::nullopt;
}

std::string AutostartEntry::writtenEntry() const {
    return std::string(kGroup) +
           "\nType=Application\nName=KOVA\nComment=Puts windows into tiles\nTryExec=" + keyValue(program_) +
           "\nExec=" + execWord(program_) + "\nNoDisplay=true\nTerminal=false\n";
}

/// Whether KOVA wrote the text, possibly with another path of the program.
bool AutostartEntry::isAsWritten(const std::string& text) const {
    const auto exec = valueOf(linesOf(text), "Exec");
    const auto withoutProgram = [](const std::string& entry) {
        return withValue(withValue(entry, "TryExec", std::nullopt), "Exec", std::nullopt);
    };
    return exec && withoutProgram(text) == withoutProgram(writtenEntry());
}

/// Replaces the entry atomically; the error, or absent on success.
std::optional<std::string> AutostartEntry::replace(const std::string& text) const {
    std::error_code ignored;
    fs::create_directories(entry_.parent_path(), ignored); // if this fails, writing the file fails with the reason
    // Some users keep their configuration files elsewhere and link to them: the link's target is replaced.
    const fs::path target = fs::is_symlink(entry_, ignored) ? fs::weakly_canonical(entry_, ignored) : entry_;
    const int error = replaceFileAtomically(target, text, {});
    if (error == 0) return std::nullopt;
    return target.string() + ": " + std::strerror(error);
}

} // namespace kova
