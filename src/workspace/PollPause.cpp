#include "workspace/PollPause.h"

#include <utility>

namespace kova {

PollPause::PollPause(MainQueue& queue, std::function<void()> ended) : queue_(queue), ended_(std::move(ended)) {}

void PollPause::begin() {
    ++windowMovementGeneration_;
    isActive_ = true;
    lastWindowMovementActivity_ = queue_.uptime();
    scheduleCheck();
}

void PollPause::noteMovement() {
    if (!isActive_) return begin();
    lastWindowMovementActivity_ = queue_.uptime();
}

void PollPause::scheduleCheck() {
    queue_.after(kCheckInterval, lifetime_.guard([this, generation = windowMovementGeneration_] {
        if (generation != windowMovementGeneration_ || !isActive_) return;
        if (queue_.uptime() - lastWindowMovementActivity_ >= kQuietTime) return end(generation);
        scheduleCheck();
    }));
}

void PollPause::endAfter(Seconds delay) {
    if (!isActive_) return;
    queue_.after(delay, lifetime_.guard([this, generation = windowMovementGeneration_] { end(generation); }));
}

void PollPause::end(std::int64_t generation) {
    if (generation != windowMovementGeneration_ || !isActive_) return;
    isActive_ = false;
    ended_();
}

void PollPause::abandon() {
    ++windowMovementGeneration_;
    isActive_ = false;
}

} // namespace kova
