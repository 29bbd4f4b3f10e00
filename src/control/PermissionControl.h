// Lets clients open the system's dialog in which the user grants the permission to manage windows.
#pragma once

namespace kova {

/// Main thread only.
class PermissionControl {
  public:
    virtual ~PermissionControl() = default;
    /// True if the system requires a permission and the user can be asked for it.
    virtual bool canAsk() const = 0;
    /// Opens the system's permission dialog, or a page of the system's settings if the dialog was shown before or
    /// cannot help. No-op unless `canAsk`. Never waits.
    virtual void ask() = 0;
};

} // namespace kova
