// The seam to what a desktop shows to somebody who starts KOVA for the first time.
#pragma once

#include <functional>
#include <optional>
#include <string>

namespace kova {

/// A setting that may be chosen on the way.
struct OnboardingOffer {
    std::string title;
    std::string text;
    std::function<bool()> isOn; // at present
    std::function<void(bool isOn)> choose;
};

/// Main thread.
class OnboardingServicing {
  public:
    virtual ~OnboardingServicing() = default;
    /// Asks for the permission that is missing, and shows what can be done. Harmless when it is shown already. Only
    /// what the user changes of the offer is chosen; nothing of it is called any more once it is closed.
    virtual void showOnboarding(std::optional<OnboardingOffer> offer) = 0;
    /// Takes it away; harmless when it is not shown.
    virtual void closeOnboarding() = 0;
};

} // namespace kova
