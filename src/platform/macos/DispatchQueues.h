// The agent's main queue and its serial work queues, which use Grand Central Dispatch.
#pragma once

#include "support/MainQueue.h"

#include <memory>
#include <string>

namespace kova::macos {

/// Must live as long as the process, since posted work may run as long as the main run loop runs.
class DispatchMainQueue final : public MainQueue {
  public:
    void post(std::function<void()> work) override;
    std::shared_ptr<ScheduledWork> after(Seconds delay, std::function<void()> work) override;
    WallTime now() const override;
    /// The time of the timers' clock, which stops while the machine sleeps.
    Seconds uptime() const override;
};

class DispatchWorkQueue final : public WorkQueue {
  public:
    /// Creates a queue with user-initiated quality of service; debuggers show the label.
    explicit DispatchWorkQueue(const std::string& label);
    /// Waits for the running job; drops jobs that have not begun.
    ~DispatchWorkQueue() override;

    void post(std::function<void()> job) override;

  private:
    struct Queue;
    std::shared_ptr<Queue> queue_;
};

} // namespace kova::macos
