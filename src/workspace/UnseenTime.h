// Measures how long the workspace was suspended because the screen was asleep, locked or used by another user.
// The deadlines of awaited windows are extended by that time, because no window was placed during it.
#pragma once

#include "support/MainQueue.h"

#include <optional>

namespace kova {

class UnseenTime {
  public:
    /// Begins the measurement, unless it has begun already. `now` is an uptime.
    void begin(Seconds now) {
        if (!since_) since_ = now;
    }
    /// Ends the measurement and returns its length; 0 if it had not begun.
    Seconds end(Seconds now) {
        const Seconds duration = since_ ? now - *since_ : Seconds{0};
        since_.reset();
        return duration;
    }

  private:
    std::optional<Seconds> since_;
};

} // namespace kova
