// The first dialog: what KOVA does, and which permission it needs. Main thread.
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
    void finish(std::uint64_t showing, bool isContinued, bool isOfferChanged, bool isOfferOn);

    std::optional<OnboardingOffer> offer_; // while the dialog is shown or about to be shown
    std::function<void()> askForPermission_;
    bool isWanted_ = false;     // the dialog is shown or about to be shown
    bool isRunning_ = false;    // also while a closed dialog's modal loop has not ended yet
    std::uint64_t showing_ = 0; // counts the calls of showOnboarding that took effect
    Lifetime lifetime_;
};

} // namespace kova::macos
