// How long the screen could not be seen: asleep, locked or another user's. Deadlines by which windows are awaited stand
// still meanwhile, since no window is placed.
#pragma once

#include "support/MainQueue.h"

#include <optional>

namespace kova {

class UnseenTime {
  public:
    /// The screen cannot be seen from now (uptime) on, unless that is so already.
    void begin(Seconds now) {
        if (!since_) since_ = now;
    }
    /// The screen can be seen again. How long it could not; 0 if it could all the time.
    Seconds end(Seconds now) {
        const Seconds duration = since_ ? now - *since_ : Seconds{0};
        since_.reset();
        return duration;
    }

  private:
    std::optional<Seconds> since_;
};

} // namespace kova
