// The seam to what a desktop shows to somebody who starts KOVA for the first time.
#pragma once

namespace kova {

/// Main thread.
class OnboardingServicing {
  public:
    virtual ~OnboardingServicing() = default;
    /// Asks for the permission that is missing, and shows what can be done. Harmless when it is shown already.
    virtual void showOnboarding() = 0;
    /// Takes it away; harmless when it is not shown.
    virtual void closeOnboarding() = 0;
};

} // namespace kova
