// Limits requests to unresponsive applications, so that not every request to such an application costs a timeout. While
// an application hangs, only polls send requests to it, at growing intervals, until it responds again.
#pragma once

#include "support/MainQueue.h"
#include "windowing/AccessibilityErrors.h"

#include <sys/types.h>

#include <map>
#include <vector>

namespace kova {

enum class RequestOccasion { poll, mainThread };

class ApplicationBackoff {
  public:
    /// The timeout of a request.
    static constexpr Seconds kDeadline{0.25};
    static constexpr Seconds kShortestPause{1};
    static constexpr Seconds kLongestPause{8};

    bool maySendRequest(pid_t process, RequestOccasion occasion, Seconds now) const;
    /// Records the outcome of a request that began at `begun` and ended at `now`, both in uptime.
    void note(pid_t process, AccessibilityOutcome outcome, Seconds begun, Seconds now);
    /// The applications that did not respond to the last request.
    std::vector<pid_t> unresponsive() const;

  private:
    struct Backoff {
        Seconds pause{};
        Seconds nextRequest{}; // uptime
    };
    std::map<pid_t, Backoff> unresponsive_;
};

} // namespace kova
