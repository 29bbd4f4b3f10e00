// A worker thread that runs one job after the other. The thread begins with the first job and sleeps between jobs.
#pragma once

#include "support/MainQueue.h"

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

namespace kova {

class SerialWorkQueue final : public WorkQueue {
  public:
    /// The name is what debuggers and process lists show; at most 15 characters of it.
    explicit SerialWorkQueue(std::string name);
    /// Waits for the job that runs; jobs not begun are dropped.
    ~SerialWorkQueue() override;

    void post(std::function<void()> job) override;

  private:
    void work();

    const std::string name_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<std::function<void()>> jobs_;
    bool isEnding_ = false;
    std::thread thread_;
};

} // namespace kova
