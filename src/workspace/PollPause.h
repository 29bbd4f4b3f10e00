// Pauses polls while the pointer drags windows. The pause ends by itself soon after the last movement.
#pragma once

#include "support/Lifetime.h"
#include "support/MainQueue.h"

#include <cstdint>
#include <functional>

namespace kova {

class PollPause {
  public:
    static constexpr Seconds kCheckInterval{0.8};
    static constexpr Seconds kQuietTime{0.75};

    PollPause(MainQueue& queue, std::function<void()> ended);

    bool isActive() const { return isActive_; }
    void begin();
    /// Begins or prolongs the pause, after a movement of the pointer.
    void noteMovement();
    /// Ends the present pause after the delay, unless a new one has begun by then.
    void endAfter(Seconds delay);
    /// Ends the pause without calling `ended`.
    void abandon();

  private:
    void scheduleCheck();
    void end(std::int64_t generation);

    MainQueue& queue_;
    std::function<void()> ended_;
    bool isActive_ = false;
    std::int64_t windowMovementGeneration_ = 0;
    Seconds lastWindowMovementActivity_{0};
    Lifetime lifetime_;
};

} // namespace kova
