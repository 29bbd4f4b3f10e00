// Dialogs. They run a modal loop, during which the main queue and timers go on.
#pragma once

#include "support/Lifetime.h"
#include "windowing/AlertServicing.h"

namespace kova::macos {

class MacAlerts final : public AlertServicing {
  public:
    void inform(const Alert& alert) override;
    void confirm(const Alert& alert, std::function<void(bool isConfirmed)> answer) override;

  private:
    Lifetime lifetime_;
};

} // namespace kova::macos
