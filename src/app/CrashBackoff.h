// Decides when a crashed program is started again: after 1, 2, 4 and 8 seconds, and not at all after the fifth crash
// within a minute. Reads no clock; callers pass the time.
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

    /// Records a crash at `now` (uptime). Returns the delay before the next start; absent if the program must not be
    /// started again.
    std::optional<Seconds> delayAfterCrash(Seconds now) {
        std::erase_if(crashes_, [now](Seconds crash) { return now - crash >= kWithin; });
        crashes_.push_back(now);
        if (crashes_.size() >= kMostCrashes) return std::nullopt;
        return Seconds(static_cast<double>(1U << (crashes_.size() - 1)));
    }
    /// Forgets all crashes; call when the user starts the program.
    void forget() { crashes_.clear(); }

  private:
    std::vector<Seconds> crashes_; // of the last minute, uptime
};

} // namespace kova
