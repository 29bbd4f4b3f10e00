// Lets clients open and close the window for new users.
#pragma once

#include <optional>
#include <string>

namespace kova {

/// Main thread only.
class OnboardingWindowControl {
  public:
    virtual ~OnboardingWindowControl() = default;
    /// Shows the window; brings an open window to the front. Returns why the window cannot be shown; absent on success,
    /// and also while the program that draws the window is still starting.
    virtual std::optional<std::string> show() = 0;
    /// No-op if the window is not shown.
    virtual void close() = 0;
};

} // namespace kova
