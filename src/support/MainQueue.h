// The main queue, its clock and its timers. All state lives on the main queue. Code reads a clock or sets a timer only
// through the main queue, so that tests can advance time.
#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace kova {

using Seconds = std::chrono::duration<double>;
using WallTime = std::chrono::system_clock::time_point;

/// Scheduled work. Dropping the handle does not cancel it.
class ScheduledWork {
  public:
    virtual ~ScheduledWork() = default;
    /// After this returns on the main thread, the work will not start. No-op if it has run.
    virtual void cancel() = 0;
};

class MainQueue {
  public:
    virtual ~MainQueue() = default;

    /// Runs the work on the main thread after all that was posted before it. Any thread may call.
    virtual void post(std::function<void()> work) = 0;
    /// Runs the work on the main thread once the delay has passed; a delay of zero or less is a post. Main thread only.
    virtual std::shared_ptr<ScheduledWork> after(Seconds delay, std::function<void()> work) = 0;
    /// Wall clock time.
    virtual WallTime now() const = 0;
    /// Time since the machine started; never goes back. Any thread may call.
    virtual Seconds uptime() const = 0;
};

/// A queue with its own thread, for jobs that may wait for other processes. It runs one job after the other.
class WorkQueue {
  public:
    virtual ~WorkQueue() = default;
    /// Any thread may call. Jobs that have not begun when the queue is destroyed are dropped.
    virtual void post(std::function<void()> job) = 0;
};

} // namespace kova
