// Focuses a window that is opened on request of the agent, which window managers would otherwise treat as focus
// stealing. Main thread only.
#pragma once

#include <QWidget>

namespace kova::ui {

class WindowFocus {
  public:
    virtual ~WindowFocus() = default;
    /// Before the window is shown. Remembers which window has the focus, unless it is one of this program.
    virtual void prepare(QWidget& window) { (void)window; }
    /// The window is shown: brings it to the front and focuses it.
    virtual void take(QWidget& window) {
        window.raise();
        window.activateWindow();
    }
    /// Focuses the window that had the focus at the last `prepare`; no-op if it was closed.
    virtual void giveBack() {}
    /// No window was open for a while: forgets which window had the focus.
    virtual void forget() {}
};

} // namespace kova::ui
