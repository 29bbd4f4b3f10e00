// The seam to what a desktop shows a new user, and to the page on which the permission is given.
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
    /// Says what KOVA does, and which permission is missing; `askForPermission` is called when the user goes on.
    /// Harmless when it is shown already. Only what the user changes of the offer is chosen; nothing is called any more
    /// once it is closed.
    virtual void showOnboarding(std::optional<OnboardingOffer> offer, std::function<void()> askForPermission) = 0;
    /// Takes it away; harmless when it is not shown.
    virtual void closeOnboarding() = 0;
    /// Opens the page of the system's settings on which the permission is given.
    virtual void openPermissionSettings() = 0;
};

} // namespace kova
