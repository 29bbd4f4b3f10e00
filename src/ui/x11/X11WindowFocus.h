// Gives the focus to windows that are opened on request of the agent, on X11: the window states the time of the user's
// last action, and the request names a pager as its source, which window managers do not treat as focus stealing. Main
// thread only.
#pragma once

#include "ui/windows/WindowFocus.h"

#include <cstdint>
#include <memory>

struct xcb_connection_t;

namespace kova::ui {

class X11WindowFocus final : public WindowFocus {
  public:
    /// `connection` is the toolkit's and outlives this.
    explicit X11WindowFocus(xcb_connection_t* connection);

    // Each waits for the X server.
    void prepare(QWidget& window) override;
    void take(QWidget& window) override;
    void giveBack() override;
    void forget() override { before_ = 0; }

  private:
    std::uint32_t atom(const char* name) const;
    /// 0 when there is none, or it is one of this program.
    std::uint32_t activeWindow() const;
    void activate(std::uint32_t window);

    xcb_connection_t* const connection_;
    std::uint32_t root_ = 0, activeWindow_, userTime_;
    std::uint32_t before_ = 0; // had the focus at the last `prepare`
};

} // namespace kova::ui
