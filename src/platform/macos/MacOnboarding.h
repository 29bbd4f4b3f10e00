// What somebody sees who starts KOVA for the first time: what it does, and the system's question for the permission.
#pragma once

#include "app/OnboardingServicing.h"
#include "support/Lifetime.h"
#include "windowing/AccessibilityServicing.h"

namespace kova::macos {

class MacOnboarding final : public OnboardingServicing {
  public:
    /// The accessibility outlives it.
    explicit MacOnboarding(AccessibilityServicing& accessibility) : accessibility_(accessibility) {}
    void showOnboarding(std::optional<OnboardingOffer> offer) override;
    void closeOnboarding() override;

  private:
    void run();

    AccessibilityServicing& accessibility_;
    std::optional<OnboardingOffer> offer_; // while it is wanted
    bool isWanted_ = false;                // shown, or about to be
    bool isRunning_ = false;
    Lifetime lifetime_;
};

} // namespace kova::macos
