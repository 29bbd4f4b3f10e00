// Focuses windows that are opened on request of the agent, on X11: sets the time of the user's last action on the
// window, and requests the focus as a pager does. Window managers do not treat this as focus stealing.
// Main thread only.
#pragma once

#include "ui/windows/WindowFocus.h"

#include <cstdint>
#include <memory>

struct xcb_connection_t;

namespace kova::ui {

class X11WindowFocus final : public WindowFocus {
  public:
    /// `connection` is the toolkit's connection and outlives this object.
    explicit X11WindowFocus(xcb_connection_t* connection);

    // The next three functions wait for the X server.
    void prepare(QWidget& window) override;
    void giveFocusTo(QWidget& window) override;
    void restoreFocus() override;
    void forget() override { formerFocus_ = 0; }

  private:
    std::uint32_t atom(const char* name) const;
    /// The active window; 0 if no window or a window of this program is active.
    std::uint32_t activeWindow() const;
    void activate(std::uint32_t window);

    xcb_connection_t* const connection_;
    std::uint32_t root_ = 0, activeWindow_, userTime_;
    std::uint32_t formerFocus_ = 0; // the window that had the focus at the last `prepare`
};

} // namespace kova::ui
