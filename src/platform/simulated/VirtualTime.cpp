#include "platform/simulated/VirtualTime.h"

#include <algorithm>
#include <stdexcept>

namespace kova {

namespace {

constexpr int kEndlessWork = 1'000'000; // more tasks than this at one moment are an endless loop
constexpr WallTime kFirstMoment{std::chrono::seconds(1'700'000'000)}; // the virtual wall clock at uptime 0

/// The duration, limited to 100 years, so that an infinite delay does not overflow.
std::chrono::nanoseconds wholeNanoseconds(Seconds duration) {
    constexpr Seconds kForever = std::chrono::hours(24 * 365 * 100);
    return std::chrono::round<std::chrono::nanoseconds>(std::clamp(duration, -kForever, kForever));
}

} // namespace

struct VirtualMainQueue::Task : ScheduledWork {
    explicit Task(std::function<void()> theWork) : work(std::move(theWork)) {}
    void cancel() override { isCanceled = true; }

    std::function<void()> work;
    bool isCanceled = false;
};

std::shared_ptr<VirtualMainQueue::Task> VirtualMainQueue::add(Nanoseconds delay, std::function<void()> work) {
    auto task = std::make_shared<Task>(std::move(work));
    const MutexLock lock(mutex_);
    tasks_.emplace(Key(uptime_ + std::max(delay, Nanoseconds::zero()), sequence_++), task);
    return task;
}

void VirtualMainQueue::post(std::function<void()> work) {
    auto task = std::make_shared<Task>(std::move(work));
    const MutexLock lock(mutex_);
    tasks_.emplace(Key(uptime_ + workerDelay_, sequence_++), std::move(task));
}

std::shared_ptr<ScheduledWork> VirtualMainQueue::after(Seconds delay, std::function<void()> work) {
    return add(wholeNanoseconds(delay), std::move(work));
}

WallTime VirtualMainQueue::now() const {
    return kFirstMoment + std::chrono::duration_cast<WallTime::duration>(uptime_);
}

Seconds VirtualMainQueue::uptime() const {
    return uptime_;
}

std::shared_ptr<VirtualMainQueue::Task> VirtualMainQueue::takeNext(Nanoseconds notAfter) {
    const MutexLock lock(mutex_);
    if (tasks_.empty() || tasks_.begin()->first.first > notAfter) return nullptr;
    const auto first = tasks_.begin();
    uptime_ = std::max(uptime_, first->first.first);
    auto task = std::move(first->second);
    tasks_.erase(first);
    return task;
}

void VirtualMainQueue::runUntil(Nanoseconds end) {
    int ranAtOneMoment = 0;
    for (auto moment = uptime_; const auto task = takeNext(end);) {
        ranAtOneMoment = uptime_ == moment ? ranAtOneMoment + 1 : 0;
        moment = uptime_;
        if (ranAtOneMoment > kEndlessWork) throw std::logic_error("work on the main queue posts more work without end");
        if (!task->isCanceled) task->work();
    }
    const MutexLock lock(mutex_); // another thread may be posting
    uptime_ = std::max(uptime_, end);
}

void VirtualMainQueue::advance(Seconds duration) {
    runUntil(uptime_ + wholeNanoseconds(duration));
}

void VirtualMainQueue::runDue() {
    runUntil(uptime_);
}

std::size_t VirtualMainQueue::pendingCount() const {
    const MutexLock lock(mutex_);
    std::size_t count = 0;
    for (const auto& [key, task] : tasks_) count += task->isCanceled ? 0 : 1;
    return count;
}

void VirtualMainQueue::setWorkerDelay(Seconds delay) {
    const MutexLock lock(mutex_);
    workerDelay_ = wholeNanoseconds(delay);
}

void VirtualWorkQueue::post(std::function<void()> job) {
    jobs_.push_back(std::move(job));
    if (isBusy_) return;
    isBusy_ = true;
    queue_.after(Seconds(0), [this, alive = std::weak_ptr(alive_)] {
        if (alive.lock()) beginNext();
    });
}

void VirtualWorkQueue::beginNext() {
    if (jobs_.empty()) {
        isBusy_ = false;
        return;
    }
    const auto job = std::move(jobs_.front());
    jobs_.pop_front();
    ++jobsBegun_;
    isRunningJob_ = true;
    spent_ = Seconds(0);
    spend(jobDuration_);
    job();
    isRunningJob_ = false;
    queue_.setWorkerDelay(Seconds(0));
    queue_.after(spent_, [this, alive = std::weak_ptr(alive_)] {
        if (alive.lock()) beginNext();
    });
}

void VirtualWorkQueue::spend(Seconds duration) {
    spent_ += duration;
    queue_.setWorkerDelay(spent_);
}

} // namespace kova
