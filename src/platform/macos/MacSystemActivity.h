// Reports when the machine or its screens sleep and wake, when the user session is switched, and when the screen is
// locked or unlocked. The Mac posts notifications of these events.
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
