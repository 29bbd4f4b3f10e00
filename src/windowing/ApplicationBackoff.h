// When an application may be asked, so that one that hangs costs one deadline now and then instead of one with every
// question. While it hangs only polls ask it, at growing intervals, until it answers again.
#pragma once

#include "support/MainQueue.h"
#include "windowing/AccessibilityErrors.h"

#include <sys/types.h>

#include <map>
#include <vector>

namespace kova {

enum class AskingOccasion { poll, mainThread };

class ApplicationBackoff {
  public:
    /// How long a question waits for its answer.
    static constexpr Seconds kDeadline{0.25};
    static constexpr Seconds kShortestPause{1};
    static constexpr Seconds kLongestPause{8};

    bool mayAsk(pid_t process, AskingOccasion occasion, Seconds now) const;
    /// What became of a question that began at `asked` and ended `now`, both in uptime.
    void note(pid_t process, AccessibilityOutcome outcome, Seconds asked, Seconds now);
    /// Those that let the last question to them go unanswered.
    std::vector<pid_t> silent() const;

  private:
    struct Silence {
        Seconds pause{};
        Seconds askAgain{}; // uptime
    };
    std::map<pid_t, Silence> silent_;
};

} // namespace kova
