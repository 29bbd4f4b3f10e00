// Whether the system's Dock hides itself, so that tiles have the whole screen. A user who has never chosen keeps the
// Dock as it is; it is changed only where it differs from the choice, since changing it restarts it. Main thread only.
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
    /// Both outlive the controller. Nothing is asked or changed before the first call.
    DockAutoHideController(DockAutoHideServicing& service, PreferencesStore& defaults);

    /// The user's choice; without one, what was read of the system.
    const Published<bool>& hidesSystemDock() const { return hidesSystemDock_; }
    /// Whether the user has ever chosen: whether there is a value under the key.
    const Published<bool>& isPreferenceConfigured() const { return isPreferenceConfigured_; }
    const Published<std::optional<std::string>>& errorMessage() const { return errorMessage_; }
    /// Why this desktop has no such preference; absent where it has one.
    std::optional<std::string> absence() const { return service_.absence(); }

    /// The user's choice: kept, and applied. On a desktop without such a preference it is only answered by the error.
    void setHidesSystemDock(bool hides);
    /// Makes the system agree with the choice, if it does not. The outcome comes later.
    void applyDockPreference();
    /// Takes over what the system says, without changing it. The outcome comes later.
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
    std::uint64_t wish_ = 0; // the newest; what is answered to an older one is out of date
    Lifetime lifetime_;
};

} // namespace kova
