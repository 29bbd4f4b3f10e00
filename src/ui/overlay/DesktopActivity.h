// Tells whether the desktop is in use, that is, whether windows, tiles, the focus, a drag or a hovered divider have
// changed within the last minute. Changes of titles do not count, since programs that the user does not use change
// their titles too. All times are readings of one steady clock.
#pragma once

#include "ui/client/Contents.h"

#include <chrono>

namespace kova::ui {

class DesktopActivity {
  public:
    using Time = std::chrono::milliseconds;
    static constexpr Time kIdleAfter{60'000};

    void update(const OverlayContents& contents, Time now) {
        OverlayContents next = contents;
        for (TileContents& tile : next.tiles) {
            for (StackEntry& entry : tile.applications) entry.title.clear();
        }
        if (next == last_) return;
        last_ = std::move(next);
        lastChange_ = now;
    }
    bool isIdle(Time now) const { return now - lastChange_ > kIdleAfter; }

  private:
    OverlayContents last_;
    Time lastChange_{0};
};

} // namespace kova::ui
