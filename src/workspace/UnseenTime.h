// Measures how long the workspace was suspended because the screen was asleep, locked or used by another user.
// Deadlines of awaited windows are extended by that time, since no window was placed.
#pragma once

#include "support/MainQueue.h"

#include <optional>

namespace kova {

class UnseenTime {
  public:
    /// Begins the measurement at `now` (uptime), unless it has begun already.
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
