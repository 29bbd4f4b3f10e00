// The start of KOVA with the login session: applies the user's choice, and shows the system's state. Main thread only.
#pragma once

#include "app/LaunchAtLoginServicing.h"
#include "persistence/PreferencesStore.h"
#include "support/Published.h"

#include <optional>
#include <string>

namespace kova {

class LaunchAtLoginController {
  public:
    /// Both arguments outlive the controller. The constructor does not read the system's state.
    LaunchAtLoginController(LaunchAtLoginServicing& service, PreferencesStore& defaults);

    const Published<bool>& startsAtLogin() const { return startsAtLogin_; }
    /// The last error, or what the user still has to allow; absent once the system's state is the one that the user
    /// chose.
    const Published<std::optional<std::string>>& errorMessage() const { return errorMessage_; }
    /// One sentence: where in the system's settings the user can allow or forbid the start at login.
    std::string guidance() const { return service_.guidance(); }

    /// Registers or unregisters KOVA, even if the system already has the chosen state.
    void setStartsAtLogin(bool starts);
    /// Reads the system's state without changing it.
    void refreshStatus();

  private:
    LaunchAtLoginServicing& service_;
    PreferencesStore& defaults_;
    std::optional<bool> requested_; // the user's last choice in this process
    Published<bool> startsAtLogin_;
    Published<std::optional<std::string>> errorMessage_;
};

} // namespace kova
