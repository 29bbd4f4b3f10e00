// Sleep, screens that sleep, user switching and the lock, from the Mac's notifications.
#pragma once

#include "windowing/SystemActivityServicing.h"

#include <vector>

namespace kova::macos {

class MacSystemActivity final : public SystemActivityServicing {
  public:
    MacSystemActivity();
    Subscription observeSystemActivity(std::function<void(SystemActivityEvent)> observer) override;

  private:
    Observers<SystemActivityEvent> observers_;
    std::vector<Subscription> registrations_;
};

} // namespace kova::macos
