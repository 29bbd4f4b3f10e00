// The seam to the list of programs that start with the login session.
#pragma once

#include <optional>
#include <string>

namespace kova {

enum class LaunchAtLoginStatus { notRegistered, enabled, requiresApproval, notFound };

/// Main thread.
class LaunchAtLoginServicing {
  public:
    virtual ~LaunchAtLoginServicing() = default;
    virtual LaunchAtLoginStatus status() const = 0;
    /// What went wrong, in the system's words; absent when it is done.
    [[nodiscard]] virtual std::optional<std::string> registerAtLogin() = 0;
    [[nodiscard]] virtual std::optional<std::string> unregisterAtLogin() = 0;
    /// Where the user can allow or forbid it by hand: one sentence.
    virtual std::string guidance() const { return "Allow KOVA under System Settings → General → Login Items."; }
};

} // namespace kova
