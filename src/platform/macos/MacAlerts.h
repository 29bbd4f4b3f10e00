// Shows dialogs with a message or a question. The main queue and its timers continue to run while a dialog is shown.
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
