// The settings window, as clients open and close it.
#pragma once

#include <optional>
#include <string>

namespace kova {

/// Main thread only.
class SettingsWindowControl {
  public:
    virtual ~SettingsWindowControl() = default;
    /// Shows the window with that pane, without one with the pane that it had last; brings it to the front when it is
    /// open. Absent when it is shown, possibly once the program that draws it has started; else why it cannot be.
    virtual std::optional<std::string> show(const std::optional<std::string>& pane) = 0;
    /// Harmless when it is not shown.
    virtual void close() = 0;
};

} // namespace kova
