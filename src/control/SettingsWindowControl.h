// Lets clients open and close the settings window.
#pragma once

#include <optional>
#include <string>

namespace kova {

/// Main thread only.
class SettingsWindowControl {
  public:
    virtual ~SettingsWindowControl() = default;
    /// Shows the window with the pane, or with its last pane if absent; brings an open window to the front. Returns why
    /// it cannot be shown; absent on success, also if the program that draws the window is still starting.
    virtual std::optional<std::string> show(const std::optional<std::string>& pane) = 0;
    /// No-op if the window is not shown.
    virtual void close() = 0;
};

} // namespace kova
