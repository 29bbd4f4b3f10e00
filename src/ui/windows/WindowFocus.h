// Gives the keyboard to a window that is opened on request of the agent, which window managers otherwise take for one
// that steals it. Main thread only.
#pragma once

#include <QWidget>

namespace kova::ui {

class WindowFocus {
  public:
    virtual ~WindowFocus() = default;
    /// Before the window is shown. Remembers which window has the keyboard, unless it is one of this program.
    virtual void prepare(QWidget& window) { (void)window; }
    /// The window is shown: brings it to the front and gives it the keyboard.
    virtual void take(QWidget& window) {
        window.raise();
        window.activateWindow();
    }
    /// Gives the keyboard back to the window that had it at the last `prepare`; nothing if that is gone.
    virtual void giveBack() {}
};

} // namespace kova::ui
