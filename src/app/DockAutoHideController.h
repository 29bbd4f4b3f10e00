// Lets the system's Dock hide itself, so that tiles have the whole screen. Until the user chooses, the Dock is not
// changed. Afterwards the Dock is changed only if its state differs from the choice, since each change restarts the
// Dock. Main thread only.
#pragma once

#include "app/DockAutoHideServicing.h"
#include "persistence/PreferencesStore.h"
#include "support/Lifetime.h"
#include "support/Published.h"

#include <cstdint>
#include <optional>
#include <string>

namespace kova {

class DockAutoHideController {
  public:
    /// Both arguments outlive the controller. The constructor neither reads nor changes the Dock.
    DockAutoHideController(DockAutoHideServicing& service, PreferencesStore& defaults);

    /// The user's choice; without one, the system's last known state.
    const Published<bool>& hidesSystemDock() const { return hidesSystemDock_; }
    /// Whether the user has ever chosen: the preference has a value.
    const Published<bool>& isPreferenceConfigured() const { return isPreferenceConfigured_; }
    const Published<std::optional<std::string>>& errorMessage() const { return errorMessage_; }
    /// Why this desktop has no such preference; absent where it has one.
    std::optional<std::string> unavailableReason() const { return service_.unavailableReason(); }

    /// Stores and applies the user's choice. On a desktop without such a preference it only sets the error.
    void setHidesSystemDock(bool hides);
    /// Changes the Dock if its state differs from the choice. Asynchronous.
    void applyDockPreference();
    /// Reads the Dock's state without changing it. Asynchronous.
    void refreshDockState();

  private:
    void fail(const DockAutoHideServiceError& error);
    void write(bool hides);
    template <class Callback>
    auto ifNewest(Callback callback);

    DockAutoHideServicing& service_;
    PreferencesStore& defaults_;
    Published<bool> hidesSystemDock_;
    Published<bool> isPreferenceConfigured_;
    Published<std::optional<std::string>> errorMessage_;
    std::uint64_t request_ = 0; // number of the newest request; replies to older requests are ignored
    Lifetime lifetime_;
};

} // namespace kova
