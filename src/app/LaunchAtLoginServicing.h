// Platform interface to the list of programs that start with the login session.
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
    /// The system's error text; absent on success.
    [[nodiscard]] virtual std::optional<std::string> registerAtLogin() = 0;
    [[nodiscard]] virtual std::optional<std::string> unregisterAtLogin() = 0;
    /// One sentence: where the user can allow or forbid the start at login.
    virtual std::string guidance() const { return "Allow KOVA under System Settings → General → Login Items."; }
};

} // namespace kova
