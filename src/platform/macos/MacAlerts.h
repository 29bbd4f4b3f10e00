// Dialogs. They run in a loop of their own, in which everything else goes on.
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
