// The seam to what the machine and the login session go through: sleep, dark screens, other users, the lock.
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
    /// Tells of what happens from now on, on the main queue and in the order of the system. The same event may come
    /// again without its opposite in between. Main thread.
    [[nodiscard]] virtual Subscription observeSystemActivity(std::function<void(SystemActivityEvent)> observer) = 0;
};

} // namespace kova
