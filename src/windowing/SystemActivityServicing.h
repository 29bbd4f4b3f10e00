// Platform interface to events of the machine and the login session: sleep, screens off, session switches, locks.
#pragma once

#include "support/Published.h"

#include <functional>

namespace kova {

enum class SystemActivityEvent {
    systemWillSleep,
    systemDidWake,
    screensDidSleep,
    screensDidWake,
    sessionDidResignActive,
    sessionDidBecomeActive,
    screenDidLock,
    screenDidUnlock
};

class SystemActivityServicing {
  public:
    virtual ~SystemActivityServicing() = default;
    /// Reports events from now on, on the main queue and in the system's order. The same event may be reported again
    /// without its opposite in between. Main thread.
    [[nodiscard]] virtual Subscription observeSystemActivity(std::function<void(SystemActivityEvent)> observer) = 0;
};

} // namespace kova
