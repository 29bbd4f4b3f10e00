// Time that tests advance. Each piece of work runs at the time when it is due, not at the end of the step, and only
// inside `advance` and `runDue`.
#pragma once

#include "support/MainQueue.h"
#include "support/Mutex.h"

#include <cstdint>
#include <deque>
#include <map>
#include <utility>

namespace kova {

class VirtualMainQueue : public MainQueue {
  public:
    void post(std::function<void()> work) override;
    std::shared_ptr<ScheduledWork> after(Seconds delay, std::function<void()> work) override;
    WallTime now() const override;
    Seconds uptime() const override;

    /// Runs all that becomes due within the duration, in order; the clock then stands at its end.
    void advance(Seconds duration);
    /// Runs the work that is due now and the work that it posts. Throws std::logic_error if that does not end.
    void runDue();
    /// The amount of work that is still to run.
    std::size_t pendingCount() const;

  private:
    friend class VirtualWorkQueue;
    using Nanoseconds = std::chrono::nanoseconds; // whole, so that ten steps of 0.1 s are one second
    struct Task;
    using Key = std::pair<Nanoseconds, std::uint64_t>; // when it is due, then the order of the calls

    std::shared_ptr<Task> add(Nanoseconds delay, std::function<void()> work);
    std::shared_ptr<Task> takeNext(Nanoseconds notAfter);
    void runUntil(Nanoseconds end);
    /// Delays later posts: they come from a worker's job that has taken this long.
    void setWorkerDelay(Seconds delay);

    mutable Mutex mutex_; // `post` may come from another thread
    std::map<Key, std::shared_ptr<Task>> tasks_ KOVA_GUARDED_BY(mutex_);
    std::uint64_t sequence_ KOVA_GUARDED_BY(mutex_) = 0;
    Nanoseconds uptime_ = std::chrono::hours(1);
    Nanoseconds workerDelay_ KOVA_GUARDED_BY(mutex_){0};
};

/// A worker in virtual time. A job sees the desktop as it is when the job begins; what it posts arrives when the job's
/// duration has passed, and only then does the next job begin.
class VirtualWorkQueue : public WorkQueue {
  public:
    explicit VirtualWorkQueue(VirtualMainQueue& queue) : queue_(queue) {}

    void post(std::function<void()> job) override;

    /// How long each job takes from now on.
    void setJobDuration(Seconds duration) { jobDuration_ = duration; }
    /// Lets the running job take that much longer, as if it waited for another process.
    void spend(Seconds duration);
    bool isRunningJob() const { return isRunningJob_; }
    int jobsBegun() const { return jobsBegun_; }
    /// Jobs that wait for the running one to end.
    std::size_t jobsWaiting() const { return jobs_.size(); }

  private:
    void beginNext();

    VirtualMainQueue& queue_;
    std::deque<std::function<void()>> jobs_;
    Seconds jobDuration_{0};
    Seconds spent_{0};
    bool isBusy_ = false;
    bool isRunningJob_ = false;
    int jobsBegun_ = 0;
    std::shared_ptr<const bool> alive_ = std::make_shared<const bool>(true);
};

} // namespace kova
