#include "platform/linux/DesktopEntries.h"

#include "support/text/Text.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <memory>

namespace kova {

namespace {

constexpr std::size_t kMaxEntryBytes = 1 << 20;
constexpr int kDeepestFolder = 8;
constexpr std::size_t kMaxIdentities = 1024; // limits the cache, since windows can have any number of names
constexpr std::string_view kSuffix = ".desktop";

char asciiLower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool equalIgnoringCase(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return asciiLower(x) == asciiLower(y); });
}

std::string_view stripped(std::string_view text) {
    const auto isBlank = [](char c) { return c == ' ' || c == '\t' || c == '\r'; };
    while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
    while (!text.empty() && isBlank(text.back())) text.remove_suffix(1);
    return text;
}

std::string unescaped(std::string_view value) {
    std::string out;
    out.reserve(value.size());
    for (std::size_t i = 0; i < value.size(); ++i) {
        if (value[i] != '\\' || i + 1 == value.size()) {
            out += value[i];
            continue;
        }
        switch (value[++i]) {
        case 's':
            out += ' ';
            break;
        case 'n':
            out += '\n';
            break;
        case 't':
            out += '\t';
            break;
        case 'r':
            out += '\r';
            break;
        default:
            out += value[i];
        }
    }
    return out;
}

/// How well the locale of a key like Name[sr@latin] fits the user's locale: 0 for not at all, 1 for a key without a
/// locale.
int suitability(std::string_view keyLocale, std::string_view userLocale) {
    if (keyLocale.empty()) return 1;
    const auto modifierAt = std::min(userLocale.find('@'), userLocale.size());
    const std::string modifier(userLocale.substr(modifierAt));
    const auto withoutModifier = userLocale.substr(0, modifierAt);
    const std::string languageAndCountry(withoutModifier.substr(0, withoutModifier.find('.')));
    const std::string language = languageAndCountry.substr(0, languageAndCountry.find('_'));
    if (language.empty()) return 0;
    if (keyLocale == languageAndCountry + modifier) return 5;
    if (keyLocale == languageAndCountry) return 4;
    if (keyLocale == language + modifier) return 3;
    return keyLocale == language ? 2 : 0;
}

/// The file's contents. Absent unless it is a regular file of at most `kMaxEntryBytes`. Never waits for a pipe.
std::optional<std::string> readFile(const std::string& path) {
    const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (file < 0) return std::nullopt;
    struct stat status {};
    std::optional<std::string> out;
    if (fstat(file, &status) == 0 && S_ISREG(status.st_mode) &&
        static_cast<std::size_t>(status.st_size) <= kMaxEntryBytes) {
        std::string bytes(static_cast<std::size_t>(status.st_size), '\0');
        const auto count = read(file, bytes.data(), bytes.size());
        if (count >= 0) {
            bytes.resize(static_cast<std::size_t>(count));
            out = std::move(bytes);
        }
    }
    close(file);
    return out;
}

/// 0 if the folder does not exist.
std::int64_t changeTime(const std::string& folder) {
    struct stat status {};
    if (stat(folder.c_str(), &status) != 0) return 0;
    return static_cast<std::int64_t>(status.st_mtim.tv_sec) * 1'000'000'000 + status.st_mtim.tv_nsec;
}

std::vector<std::string> applicationFolders(const XdgFolders& folders) {
    std::vector<std::string> roots{(folders.dataHome / "applications").string()};
    for (const auto& folder : folders.dataFolders) roots.push_back((folder / "applications").string());
    return roots;
}

std::string_view lastComponent(std::string_view id) {
    return id.substr(id.rfind('.') + 1);
}

std::vector<std::string> split(std::string_view value, char separator) {
    std::vector<std::string> members;
    while (!value.empty()) {
        const auto end = std::min(value.find(separator), value.size());
        if (end > 0) members.emplace_back(value.substr(0, end));
        value.remove_prefix(std::min(end + 1, value.size()));
    }
    return members;
}

bool includes(const std::vector<std::string>& members, const std::string& wanted) {
    return std::find(members.begin(), members.end(), wanted) != members.end();
}

/// Reads the keys that launching and listing need; ignores others.
void readLaunchKey(DesktopEntry& entry, std::string_view key, std::string_view value) {
    if (key == "Exec") {
        entry.execLine = unescaped(value);
    } else if (key == "TryExec") {
        entry.tryExec = unescaped(value);
    } else if (key == "Path") {
        entry.workingFolder = unescaped(value);
    } else if (key == "Terminal") {
        entry.needsTerminal = value == "true";
    } else if (key == "OnlyShowIn") {
        entry.onlyShowIn = split(value, ';');
    } else if (key == "NotShowIn") {
        entry.notShowIn = split(value, ';');
    } else if (key == "Categories") {
        entry.isFileManager = includes(split(value, ';'), "FileManager");
    }
}

/// Empty if the variable is not set.
std::string_view environmentVariable(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

} // namespace

bool isShownOn(const DesktopEntry& entry, std::string_view currentDesktops) {
    for (const auto& desktop : split(currentDesktops, ':')) {
        if (includes(entry.onlyShowIn, desktop)) return true;
        if (includes(entry.notShowIn, desktop)) return false;
    }
    return entry.onlyShowIn.empty();
}

std::optional<std::string> findProgram(const std::string& name) {
    const auto isProgram = [](const std::string& path) {
        struct stat status {};
        return stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) && access(path.c_str(), X_OK) == 0;
    };
    if (name.find('/') != std::string::npos) {
        return name[0] == '/' && isProgram(name) ? std::optional(name) : std::nullopt;
    }
    if (name.empty()) return std::nullopt;
    const auto path = environmentVariable("PATH");
    for (const auto& folder : split(path.empty() ? "/usr/local/bin:/usr/bin:/bin" : path, ':')) {
        // Relative folders are skipped, since they would depend on the current folder.
        if (folder[0] == '/' && isProgram(folder + "/" + name)) return folder + "/" + name;
    }
    return std::nullopt;
}

std::optional<DesktopEntry> readDesktopEntry(const std::string& path, std::string_view locale) {
    const auto bytes = readFile(path);
    return bytes ? parseDesktopEntry(*bytes, locale) : std::nullopt;
}

std::optional<DesktopEntry> parseDesktopEntry(std::string_view text, std::string_view locale) {
    DesktopEntry entry;
    int nameSuitability = 0;
    bool isInGroup = false, hasGroup = false;
    while (!text.empty()) {
        const auto end = std::min(text.find('\n'), text.size());
        const auto line = stripped(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
        if (line.empty() || line.front() == '#') continue;
        if (line.front() == '[') {
            isInGroup = line == "[Desktop Entry]";
            hasGroup = hasGroup || isInGroup;
            continue;
        }
        const auto equals = line.find('=');
        if (!isInGroup || equals == std::string_view::npos) continue;
        const auto key = stripped(line.substr(0, equals));
        const auto value = stripped(line.substr(equals + 1));
        const auto bracket = key.find('[');
        if (key.substr(0, bracket) == "Name") {
            const auto keyLocale = bracket == std::string_view::npos || key.back() != ']'
                                       ? std::string_view()
                                       : key.substr(bracket + 1, key.size() - bracket - 2);
            const int found = suitability(keyLocale, locale);
            if (found > nameSuitability) {
                entry.name = validUtf8(unescaped(value));
                nameSuitability = found;
            }
        } else if (key == "Type") {
            entry.isApplication = value == "Application";
        } else if (key == "StartupWMClass") {
            entry.windowClass = unescaped(value);
        } else if (key == "Icon") {
            entry.iconName = validUtf8(unescaped(value));
        } else if (key == "Hidden") {
            entry.isHidden = value == "true";
        } else if (key == "NoDisplay") {
            entry.isDisplayed = value != "true";
        } else {
            readLaunchKey(entry, key, value);
        }
    }
    if (!hasGroup) return std::nullopt;
    return entry;
}

DesktopEntries::DesktopEntries(const XdgFolders& folders, std::string locale) :
    roots_(applicationFolders(folders)), locale_(std::move(locale)) {}

std::string DesktopEntries::localeOfMessages() {
    for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        if (const char* value = std::getenv(variable); value && *value) return value;
    }
    return "C";
}

ApplicationIdentity DesktopEntries::identify(const ApplicationTraces& traces) {
    const MutexLock lock(mutex_);
    if (const auto known = identities_.find(traces); known != identities_.end()) return known->second;
    if (!isScanned_ || hasChanged()) scan();
    if (identities_.size() >= kMaxIdentities) identities_.clear();

    ApplicationIdentity identity;
    if (const Entry* entry = find(traces)) {
        identity.bundleIdentifier = BundleID(text(entry->id));
        identity.localizedName = text(entry->name);
        identity.bundlePath = text(entry->path);
        identity.iconName = text(entry->iconName);
        identity.isFileManager = entry->isFileManager;
    } else {
        const std::string name = validUtf8(traces.className.empty() ? traces.instanceName : traces.className);
        identity.bundleIdentifier = BundleID(lowercased(name));
        identity.localizedName = name;
    }
    return identities_.emplace(traces, std::move(identity)).first->second;
}

const DesktopEntries::Entry* DesktopEntries::find(const ApplicationTraces& traces) const {
    const std::string &instanceName = traces.instanceName, &className = traces.className,
                      &applicationID = traces.applicationID;
    const auto textOf = [this](Range range) {
        mutex_.assertHeld();
        return text(range);
    };
    const auto first = [this](auto&& matches) -> const Entry* {
        mutex_.assertHeld();
        const auto found = std::find_if(entries_.begin(), entries_.end(), matches);
        return found == entries_.end() ? nullptr : &*found;
    };
    // The application's own ID is the id of an entry, so only an exact match counts.
    if (!applicationID.empty()) {
        if (const auto* entry = first([&](const Entry& e) { return textOf(e.id) == applicationID; })) return entry;
    }
    for (const auto& name : {className, instanceName}) {
        if (name.empty()) continue;
        if (const auto* entry = first([&](const Entry& e) { return textOf(e.windowClass) == name; })) return entry;
        if (const auto* entry = first([&](const Entry& e) { return equalIgnoringCase(textOf(e.windowClass), name); })) {
            return entry;
        }
    }
    const auto& name = className.empty() ? instanceName : className;
    if (name.empty()) return nullptr;
    if (const auto* entry = first([&](const Entry& e) { return textOf(e.id) == name; })) return entry;
    if (const auto* entry = first([&](const Entry& e) { return equalIgnoringCase(textOf(e.id), name); })) return entry;
    return first([&](const Entry& e) { return equalIgnoringCase(lastComponent(textOf(e.id)), name); });
}

std::vector<LaunchableApplication> DesktopEntries::launchableApplications() {
    const MutexLock lock(mutex_);
    if (!isScanned_ || hasChanged()) scan();
    std::vector<LaunchableApplication> applications;
    for (const Entry& entry : entries_) {
        if (entry.isListed) applications.push_back(launchable(entry));
    }
    std::stable_sort(applications.begin(), applications.end(),
                     [](const auto& a, const auto& b) { return localizedCaseInsensitiveCompare(a.name, b.name) < 0; });
    return applications;
}

std::optional<LaunchableApplication> DesktopEntries::launchableApplication(const BundleID& id) {
    const MutexLock lock(mutex_);
    if (!isScanned_ || hasChanged()) scan();
    const auto found = std::find_if(entries_.begin(), entries_.end(), [&](const Entry& entry) {
        mutex_.assertHeld();
        return text(entry.id) == id.text();
    });
    if (found == entries_.end()) return std::nullopt;
    return launchable(*found);
}

LaunchableApplication DesktopEntries::launchable(const Entry& entry) const {
    return {.identifier = std::string(text(entry.id)),
            .name = std::string(text(entry.name)),
            .bundleIdentifier = BundleID(text(entry.id)),
            .location = std::string(text(entry.path)),
            .icon = {.name = std::string(text(entry.iconName)), .image = nullptr}};
}

void DesktopEntries::scan() {
    isScanned_ = true;
    texts_.clear();
    entries_.clear();
    folders_.clear();
    identities_.clear();
    for (const auto& root : roots_) scanFolder(root, "", 0);
    // Hidden entries were needed only to exclude later entries with the same ids.
    std::erase_if(entries_, [](const Entry& entry) { return entry.isHidden; });
    std::stable_partition(entries_.begin(), entries_.end(), [](const Entry& entry) { return entry.isDisplayed; });
    texts_.shrink_to_fit();
    entries_.shrink_to_fit();
}

void DesktopEntries::scanFolder(const std::string& folder, const std::string& idPrefix, int depth) {
    folders_.push_back({folder, changeTime(folder)});
    const std::unique_ptr<DIR, int (*)(DIR*)> stream(opendir(folder.c_str()), closedir);
    if (!stream || depth > kDeepestFolder) return;
    std::vector<std::string> names;
    while (const dirent* member = readdir(stream.get())) {
        if (member->d_name[0] != '.') names.emplace_back(member->d_name);
    }
    // Folders list their members in any order; results must not depend on it.
    std::sort(names.begin(), names.end());
    for (const auto& name : names) {
        const std::string path = folder + "/" + name;
        if (name.ends_with(kSuffix)) {
            addFile(path, idPrefix + name.substr(0, name.size() - kSuffix.size()));
            continue;
        }
        // Links to folders are not followed, since they may lead back to this folder.
        struct stat status {};
        if (lstat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode)) {
            scanFolder(path, idPrefix + name + "-", depth + 1);
        }
    }
}

void DesktopEntries::addFile(const std::string& path, const std::string& id) {
    const bool isShadowed = std::any_of(entries_.begin(), entries_.end(), [&](const Entry& entry) {
        mutex_.assertHeld();
        return text(entry.id) == id;
    });
    if (isShadowed) return;
    if (validUtf8(path) != path) return; // ids are sent to clients as text
    const auto parsed = readDesktopEntry(path, locale_);
    if (!parsed || (!parsed->isHidden && (!parsed->isApplication || parsed->name.empty()))) return;
    Entry entry;
    entry.path = keep(path);
    const auto nameStart = static_cast<std::uint32_t>(path.size() - kSuffix.size());
    // The id is a part of the path, whose text it shares, unless it contains the names of subfolders.
    entry.id = path.ends_with("/" + id + std::string(kSuffix))
                   ? Range{entry.path.start + nameStart - static_cast<std::uint32_t>(id.size()),
                           static_cast<std::uint32_t>(id.size())}
                   : keep(id);
    entry.name = keep(parsed->name);
    entry.windowClass = keep(parsed->windowClass);
    entry.iconName = keep(parsed->iconName);
    entry.isHidden = parsed->isHidden;
    entry.isDisplayed = parsed->isDisplayed;
    entry.isListed = parsed->isDisplayed && isShownOn(*parsed, environmentVariable("XDG_CURRENT_DESKTOP")) &&
                     !parsed->execLine.empty() && (parsed->tryExec.empty() || findProgram(parsed->tryExec));
    entry.isFileManager = parsed->isFileManager;
    entries_.push_back(entry);
}

bool DesktopEntries::hasChanged() const {
    return std::any_of(folders_.begin(), folders_.end(),
                       [](const Folder& folder) { return changeTime(folder.path) != folder.changedNanoseconds; });
}

DesktopEntries::Range DesktopEntries::keep(std::string_view text) {
    const Range range{static_cast<std::uint32_t>(texts_.size()), static_cast<std::uint32_t>(text.size())};
    texts_ += text;
    return range;
}

std::string_view DesktopEntries::text(Range range) const {
    return std::string_view(texts_).substr(range.start, range.length);
}

} // namespace kova
