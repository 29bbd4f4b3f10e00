// Lets clients open and close the settings window.
#pragma once

#include <optional>
#include <string>

namespace kova {

/// Main thread only.
class SettingsWindowControl {
  public:
    virtual ~SettingsWindowControl() = default;
    /// Opens the window, or brings the open window to the front, and shows `pane`; if absent, the pane shown last.
    /// Returns the reason if the window cannot be shown; nothing on success or while the program that draws the window
    /// is starting.
    virtual std::optional<std::string> show(const std::optional<std::string>& pane) = 0;
    /// No-op if the window is not shown.
    virtual void close() = 0;
};

} // namespace kova
