// Focuses windows that are opened on request of the agent; window managers would otherwise treat this as focus
// stealing. Main thread only.
#pragma once

#include <QWidget>

namespace kova::ui {

class WindowFocus {
  public:
    virtual ~WindowFocus() = default;
    /// Call before the window is shown. Remembers the focused window, unless it belongs to this program.
    virtual void prepare(QWidget& window) { (void)window; }
    /// Call after the window is shown. Brings the window to the front and focuses it.
    virtual void giveFocusTo(QWidget& window) {
        window.raise();
        window.activateWindow();
    }
    /// Focuses the remembered window; no-op if that window was closed.
    virtual void restoreFocus() {}
    /// Call when no window has been open for a while. Forgets the remembered window.
    virtual void forget() {}
};

} // namespace kova::ui
