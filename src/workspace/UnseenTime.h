// Measures how long the workspace was suspended: the screen asleep, locked or another user's. Deadlines of awaited
// windows stand still meanwhile, since no window is placed.
#pragma once

#include "support/MainQueue.h"

#include <optional>

namespace kova {

class UnseenTime {
  public:
    /// Begins at `now` (uptime), unless it has begun already.
    void begin(Seconds now) {
        if (!since_) since_ = now;
    }
    /// Ends it and returns its length; 0 if it had not begun.
    Seconds end(Seconds now) {
        const Seconds duration = since_ ? now - *since_ : Seconds{0};
        since_.reset();
        return duration;
    }

  private:
    std::optional<Seconds> since_;
};

} // namespace kova
