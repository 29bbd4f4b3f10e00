// Start at login by an autostart entry, which every Linux desktop reads. Files are changed only when the user asks for
// it; lines that the user has put into the entry stay. A systemd unit that starts the agent as well is respected.
#pragma once

#include "app/LaunchAtLoginServicing.h"
#include "platform/linux/XdgFolders.h"

#include <filesystem>
#include <optional>
#include <string>

namespace kova {

class AutostartEntry final : public LaunchAtLoginServicing {
  public:
    /// `program` is the full path of the agent.
    AutostartEntry(const XdgFolders& folders, std::string program,
                   std::filesystem::path systemUnits = "/etc/systemd/user");

    /// An entry that says Hidden=true or X-GNOME-Autostart-enabled=false does not start anything: not registered. One
    /// whose program is gone is not found.
    LaunchAtLoginStatus status() const override;
    std::optional<std::string> registerAtLogin() override;
    /// Removes an entry that is as it was written here; another one is switched off and kept.
    std::optional<std::string> unregisterAtLogin() override;
    std::string guidance() const override;

  private:
    bool isUnitEnabled() const;
    /// Of the whole machine, when there is one.
    std::optional<std::filesystem::path> sharedEntry() const;
    std::string writtenEntry() const;
    bool isAsWritten(const std::string& text) const;
    std::optional<std::string> replace(const std::string& text) const;

    std::filesystem::path entry_; // the user's own
    std::vector<std::filesystem::path> sharedFolders_;
    std::vector<std::filesystem::path> unitFolders_; // the user's first
    std::string program_;
};

} // namespace kova
