// Whether the desktop is used: windows, tiles, focus or pointer have changed within the last minute. Titles do not
// count, since programs change them by themselves, also at night. A value; times are those of any steady clock.
#pragma once

#include "ui/client/Contents.h"

#include <chrono>

namespace kova::ui {

class DesktopActivity {
  public:
    using Time = std::chrono::milliseconds;
    static constexpr Time kIdleAfter{60'000};

    void note(const OverlayContents& contents, Time now) {
        OverlayContents next = contents;
        for (TileContents& tile : next.tiles) {
            for (StackEntry& entry : tile.applications) entry.title.clear();
        }
        if (next == last_) return;
        last_ = std::move(next);
        since_ = now;
    }
    bool isIdle(Time now) const { return now - since_ > kIdleAfter; }

  private:
    OverlayContents last_;
    Time since_{0}; // of the last change
};

} // namespace kova::ui
