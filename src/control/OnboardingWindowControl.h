// Lets clients open and close the window for new users.
#pragma once

#include <optional>
#include <string>

namespace kova {

/// Main thread only.
class OnboardingWindowControl {
  public:
    virtual ~OnboardingWindowControl() = default;
    /// Opens the window, or brings the open window to the front. Returns the reason if the window cannot be shown;
    /// nothing on success or while the program that draws the window is starting.
    virtual std::optional<std::string> show() = 0;
    /// No-op if the window is not shown.
    virtual void close() = 0;
};

} // namespace kova
