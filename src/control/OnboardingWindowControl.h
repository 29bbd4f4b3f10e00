// The window for new users, as clients open and close it.
#pragma once

#include <optional>
#include <string>

namespace kova {

/// Main thread only.
class OnboardingWindowControl {
  public:
    virtual ~OnboardingWindowControl() = default;
    /// Shows the window; brings it to the front when it is open. Absent when it is shown, possibly once the program
    /// that draws it has started; else why it cannot be.
    virtual std::optional<std::string> show() = 0;
    /// Harmless when it is not shown.
    virtual void close() = 0;
};

} // namespace kova
