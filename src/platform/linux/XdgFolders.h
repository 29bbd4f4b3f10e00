// The folders for a program's files on a Linux desktop. Every folder is absolute; a variable with a relative path is
// ignored, as the XDG base directory specification requires.
#pragma once

#include <filesystem>
#include <optional>
#include <vector>

namespace kova {

struct XdgFolders {
    std::filesystem::path configHome;                 // XDG_CONFIG_HOME, else ~/.config
    std::vector<std::filesystem::path> configFolders; // XDG_CONFIG_DIRS, the most important first, without configHome
    std::filesystem::path stateHome;                  // XDG_STATE_HOME, else ~/.local/state
    std::filesystem::path dataHome;                   // XDG_DATA_HOME, else ~/.local/share
    std::vector<std::filesystem::path> dataFolders;   // XDG_DATA_DIRS, the most important first, without dataHome
    /// XDG_RUNTIME_DIR; absent outside a login session.
    std::optional<std::filesystem::path> runtime;

    /// From the environment of this process.
    static XdgFolders fromEnvironment();
};

/// Creates the folder, and missing folders above it, with access for this user alone (0700). False on failure, with the
/// reason in errno.
bool createPrivateFolder(const std::filesystem::path& folder);

} // namespace kova
