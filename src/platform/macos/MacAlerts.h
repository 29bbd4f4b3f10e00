// Dialogs. The main queue and timers continue to run during a dialog's modal loop.
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
