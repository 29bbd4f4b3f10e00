// Platform interface to the dialog for a new user, and to the settings page on which the permission is granted.
#pragma once

#include <functional>
#include <optional>
#include <string>

namespace kova {

/// A setting that the dialog offers.
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
    /// Shows what KOVA does and which permission is missing; `askForPermission` is called when the user continues.
    /// No-op while it is shown. The offer's setting is changed only if the user changes it. No function is called after
    /// the dialog is closed.
    virtual void showOnboarding(std::optional<OnboardingOffer> offer, std::function<void()> askForPermission) = 0;
    /// Closes the dialog; no-op if it is not shown.
    virtual void closeOnboarding() = 0;
    /// Opens the page of the system's settings on which the permission is granted.
    virtual void openPermissionSettings() = 0;
};

} // namespace kova
