// Delays before a crashed program is started again: 1, 2, 4, … seconds, and no restart after the fifth crash within a
// minute. A value without a clock.
#pragma once

#include "support/MainQueue.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <vector>

namespace kova {

class CrashBackoff {
  public:
    static constexpr std::size_t kMostCrashes = 5;
    static constexpr Seconds kWithin{60};

    /// Records a crash at `now` (uptime). The time until the next start; absent when the program must not be started
    /// again.
    std::optional<Seconds> delayAfterCrash(Seconds now) {
        std::erase_if(crashes_, [now](Seconds crash) { return now - crash >= kWithin; });
        crashes_.push_back(now);
        if (crashes_.size() >= kMostCrashes) return std::nullopt;
        return Seconds(static_cast<double>(1U << (crashes_.size() - 1)));
    }
    /// Call when the user starts the program.
    void forget() { crashes_.clear(); }

  private:
    std::vector<Seconds> crashes_; // of the last minute, uptime
};

} // namespace kova
