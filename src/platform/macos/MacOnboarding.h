// The dialog for a new user. It says what KOVA does and which permission KOVA needs. Main thread.
#pragma once

#include "app/OnboardingServicing.h"
#include "support/Lifetime.h"

#include <cstdint>

namespace kova::macos {

class MacOnboarding final : public OnboardingServicing {
  public:
    void showOnboarding(std::optional<OnboardingOffer> offer, std::function<void()> askForPermission) override;
    void closeOnboarding() override;
    void openPermissionSettings() override;

  private:
    void run();
    void finish(std::uint64_t number, bool isContinued, bool isOfferChanged, bool isOfferOn);

    std::optional<OnboardingOffer> offer_; // while the dialog is shown or about to be shown
    std::function<void()> askForPermission_;
    bool isShownOrPending_ = false;   // pending: the dialog will be shown soon
    bool isModalLoopRunning_ = false; // may still be true for a moment after the dialog was closed
    std::uint64_t dialogNumber_ = 0;  // how many dialogs were requested so far
    Lifetime lifetime_;
};

} // namespace kova::macos
