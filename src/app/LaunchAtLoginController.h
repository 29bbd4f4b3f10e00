// Whether KOVA starts with the login session: the user's wish, and what the system has made of it. Main thread only.
#pragma once

#include "app/LaunchAtLoginServicing.h"
#include "persistence/PreferencesStore.h"
#include "support/Published.h"

#include <optional>
#include <string>

namespace kova {

class LaunchAtLoginController {
  public:
    /// Both outlive the controller. The system is asked by `refreshStatus`, not before.
    LaunchAtLoginController(LaunchAtLoginServicing& service, PreferencesStore& defaults);

    const Published<bool>& startsAtLogin() const { return startsAtLogin_; }
    /// What went wrong last, or what the user still has to allow, until it is as wished.
    const Published<std::optional<std::string>>& errorMessage() const { return errorMessage_; }
    /// Where the user can allow or forbid it by hand.
    std::string guidance() const { return service_.guidance(); }

    /// Registers or unregisters, also when the system seems to agree already: the user wants it to.
    void setStartsAtLogin(bool starts);
    /// Takes over what the system says; changes nothing there.
    void refreshStatus();

  private:
    LaunchAtLoginServicing& service_;
    PreferencesStore& defaults_;
    std::optional<bool> wish_; // the newest of this process
    Published<bool> startsAtLogin_;
    Published<std::optional<std::string>> errorMessage_;
};

} // namespace kova
