// Starts the agent at login by an autostart entry, which every Linux desktop reads. The entry is changed only at the
// user's request, and lines that the user added are kept. If a systemd unit starts the agent, the start at login counts
// as enabled, too.
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

    /// `notRegistered` if the entry has Hidden=true or X-GNOME-Autostart-enabled=false; `notFound` if the entry's
    /// program does not exist.
    LaunchAtLoginStatus status() const override;
    std::optional<std::string> registerAtLogin() override;
    /// Removes an entry that KOVA wrote and the user did not change; any other entry is disabled and kept.
    std::optional<std::string> unregisterAtLogin() override;
    std::string guidance() const override;

  private:
    bool isUnitEnabled() const;
    /// The system-wide entry, if there is one.
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
