#include "platform/linux/XdgFolders.h"

#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <string_view>

namespace kova {

namespace {

std::optional<std::filesystem::path> absolute(std::string_view text) {
    if (text.empty() || text.front() != '/') return std::nullopt;
    return std::filesystem::path(text);
}

std::optional<std::filesystem::path> folderNamedBy(const char* variable) {
    const char* value = std::getenv(variable);
    return value ? absolute(value) : std::nullopt;
}

std::filesystem::path home() {
    if (const auto folder = folderNamedBy("HOME")) return *folder;
    const passwd* user = getpwuid(getuid());
    return user && user->pw_dir ? user->pw_dir : "/";
}

std::vector<std::filesystem::path> folderList(std::string_view text) {
    std::vector<std::filesystem::path> folders;
    while (!text.empty()) {
        const auto end = std::min(text.find(':'), text.size());
        if (auto folder = absolute(text.substr(0, end))) folders.push_back(std::move(*folder));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return folders;
}

} // namespace

XdgFolders XdgFolders::fromEnvironment() {
    XdgFolders folders;
    folders.configHome = folderNamedBy("XDG_CONFIG_HOME").value_or(home() / ".config");
    const char* configFolders = std::getenv("XDG_CONFIG_DIRS");
    folders.configFolders = folderList(configFolders ? configFolders : "");
    if (folders.configFolders.empty()) folders.configFolders = {"/etc/xdg"};
    folders.stateHome = folderNamedBy("XDG_STATE_HOME").value_or(home() / ".local/state");
    folders.dataHome = folderNamedBy("XDG_DATA_HOME").value_or(home() / ".local/share");
    const char* dataFolders = std::getenv("XDG_DATA_DIRS");
    folders.dataFolders = folderList(dataFolders ? dataFolders : "");
    if (folders.dataFolders.empty()) folders.dataFolders = {"/usr/local/share", "/usr/share"};
    folders.runtime = folderNamedBy("XDG_RUNTIME_DIR");
    return folders;
}

bool createPrivateFolder(const std::filesystem::path& folder) {
    std::filesystem::path path;
    for (const auto& component : folder) {
        path /= component;
        if (mkdir(path.c_str(), 0700) == 0 || errno == EEXIST) continue;
        // mkdir of an existing automounted or read-only folder may fail with another error.
        const int error = errno;
        if (struct stat status; stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode)) continue;
        errno = error;
        return false;
    }
    struct stat status {};
    if (stat(folder.c_str(), &status) != 0) return false;
    if (!S_ISDIR(status.st_mode)) errno = ENOTDIR;
    return S_ISDIR(status.st_mode);
}

} // namespace kova
