// A clock and queues for tests. Time passes only when a test calls `advance`. Work runs only inside `advance` and
// `runDue`, and while it runs, the clock shows the time at which the work was due.
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

    /// Lets the duration pass and runs all work that becomes due within it, in order.
    void advance(Seconds duration);
    /// Runs the work that is due now, and the work that this work posts. Throws std::logic_error if that does not end.
    void runDue();
    /// The number of tasks that have not run; canceled tasks do not count.
    std::size_t pendingCount() const;

  private:
    friend class VirtualWorkQueue;
    using Nanoseconds = std::chrono::nanoseconds; // an integer type: ten steps of 0.1 s are exactly one second
    struct Task;
    using Key = std::pair<Nanoseconds, std::uint64_t>; // the uptime at which the task is due, and its number in the
                                                       // order of the calls

    std::shared_ptr<Task> add(Nanoseconds delay, std::function<void()> work);
    std::shared_ptr<Task> takeNext(Nanoseconds notAfter);
    void runUntil(Nanoseconds end);
    /// Delays all later posts, since they come from a worker's job that has lasted this long. 0 when no job runs.
    void setWorkerDelay(Seconds delay);

    mutable Mutex mutex_; // `post` may come from another thread
    std::map<Key, std::shared_ptr<Task>> tasks_ KOVA_GUARDED_BY(mutex_);
    std::uint64_t sequence_ KOVA_GUARDED_BY(mutex_) = 0;
    Nanoseconds uptime_ = std::chrono::hours(1);
    Nanoseconds workerDelay_ KOVA_GUARDED_BY(mutex_){0};
};

/// A worker in virtual time. A job sees the desktop as it is when the job begins. Work that the job posts to the main
/// queue runs after the job's duration. Then the next job begins.
class VirtualWorkQueue : public WorkQueue {
  public:
    explicit VirtualWorkQueue(VirtualMainQueue& queue) : queue_(queue) {}

    void post(std::function<void()> job) override;

    /// Sets the duration of each job from now on.
    void setJobDuration(Seconds duration) { jobDuration_ = duration; }
    Seconds jobDuration() const { return jobDuration_; }
    /// Makes the running job last longer by that time, as if it waited for another process.
    void spend(Seconds duration);
    bool isRunningJob() const { return isRunningJob_; }
    int jobsBegun() const { return jobsBegun_; }
    /// The number of jobs that have not begun.
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
