// When a program that is to run all the time is started again after a crash: after 1, 2, 4, … seconds, and no more
// after the fifth crash within a minute. Pure of any clock.
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

    /// Notes a crash; how long to wait before the next start, absent when there is to be none. Uptime.
    std::optional<Seconds> delayAfterCrash(Seconds now) {
        std::erase_if(crashes_, [now](Seconds crash) { return now - crash >= kWithin; });
        crashes_.push_back(now);
        if (crashes_.size() >= kMostCrashes) return std::nullopt;
        return Seconds(static_cast<double>(1U << (crashes_.size() - 1)));
    }
    /// The user wants a fresh start.
    void forget() { crashes_.clear(); }

  private:
    std::vector<Seconds> crashes_; // of the last minute, uptime
};

} // namespace kova
