// A worker thread that runs jobs one after the other. The thread starts with the first job and sleeps between jobs.
#pragma once

#include "support/MainQueue.h"
#include "support/Mutex.h"

#include <condition_variable>
#include <deque>
#include <functional>
#include <string>
#include <thread>

namespace kova {

class SerialWorkQueue final : public WorkQueue {
  public:
    /// `name` is the name of the thread in debuggers and process lists; only its first 15 characters are used.
    explicit SerialWorkQueue(std::string name);
    /// Waits until the running job ends. Jobs that have not begun are dropped.
    ~SerialWorkQueue() override;

    void post(std::function<void()> job) override;

  private:
    void work();

    const std::string name_;
    Mutex mutex_;
    std::condition_variable_any changed_;
    std::deque<std::function<void()>> jobs_ KOVA_GUARDED_BY(mutex_);
    bool isEnding_ KOVA_GUARDED_BY(mutex_) = false;
    std::thread thread_;
};

} // namespace kova
