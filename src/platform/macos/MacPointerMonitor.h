// Reports presses, movements and releases of the pointer while its main button is held, anywhere on the desktop.
#pragma once

#include "support/Lifetime.h"
#include "support/MainQueue.h"
#include "windowing/PointerServicing.h"

namespace kova::macos {

class MacPointerMonitor final : public PointerMonitorServicing {
  public:
    /// The queue outlives the monitor.
    explicit MacPointerMonitor(MainQueue& queue) : queue_(queue) {}
    Subscription observePointer(std::function<void(const PointerEvent&)> observer) override;
    bool dragsWindowsByAnyPoint() const override { return false; }

  private:
    MainQueue& queue_;
    Lifetime lifetime_;
};

} // namespace kova::macos
