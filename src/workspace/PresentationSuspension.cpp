#include "workspace/PresentationSuspension.h"

#include <utility>

namespace kova {

PresentationSuspension::PresentationSuspension(MainQueue& queue, std::function<void()> ended) :
    queue_(queue), ended_(std::move(ended)) {}

void PresentationSuspension::suspend() {
    ++windowMovementGeneration_;
    isSuspended_ = true;
    lastWindowMovementActivity_ = queue_.uptime();
    scheduleCheck();
}

void PresentationSuspension::noteMovement() {
    if (!isSuspended_) return suspend();
    lastWindowMovementActivity_ = queue_.uptime();
}

void PresentationSuspension::scheduleCheck() {
    queue_.after(kCheckInterval, lifetime_.guard([this, generation = windowMovementGeneration_] {
        if (generation != windowMovementGeneration_ || !isSuspended_) return;
        if (queue_.uptime() - lastWindowMovementActivity_ >= kQuietTime) return end(generation);
        scheduleCheck();
    }));
}

void PresentationSuspension::endAfter(Seconds delay) {
    if (!isSuspended_) return;
    queue_.after(delay, lifetime_.guard([this, generation = windowMovementGeneration_] { end(generation); }));
}

void PresentationSuspension::end(std::int64_t generation) {
    if (generation != windowMovementGeneration_ || !isSuspended_) return;
    isSuspended_ = false;
    ended_();
}

void PresentationSuspension::abandon() {
    ++windowMovementGeneration_;
    isSuspended_ = false;
}

} // namespace kova
