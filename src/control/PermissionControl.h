// The permission to manage windows, for clients: its state, and the request to show the system's dialog.
#pragma once

namespace kova {

/// Main thread only.
class PermissionControl {
  public:
    virtual ~PermissionControl() = default;
    /// Whether the system has a permission that the user can be asked for.
    virtual bool canAsk() const = 0;
    /// Opens the system's permission dialog, or the page of its settings if the dialog was shown before or cannot help.
    /// No-op unless `canAsk`. Never waits.
    virtual void ask() = 0;
};

} // namespace kova
