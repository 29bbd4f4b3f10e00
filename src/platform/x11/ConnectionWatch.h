// Watches the connection for the main thread, except during a pause and while the polling queue waits for replies,
// since only one thread can read.
#pragma once

#include "support/Lifetime.h"
#include "support/MainQueue.h"
#include "support/Published.h"

#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <utility>

namespace kova::x11 {

/// How a main loop watches a descriptor: it calls back while there is something to read, until the subscription is
/// dropped.
using DescriptorWatch = std::function<Subscription(int descriptor, std::function<void()> readable)>;

class ConnectionWatch {
  public:
    ConnectionWatch(MainQueue& queue, int descriptor) : queue_(queue), descriptor_(descriptor) {}

    // Main thread
    void begin(DescriptorWatch watch, std::function<void()> readable);
    /// Watches from now on.
    void resume();
    /// Pauses until `resume`, or until the time is over, when `readable` is called; during a poll until `resume` only.
    void rest(Seconds pause);
    void stop() { watching_.reset(); }

    // With the caller's lock held that also guards whether a poll is reading
    void setPausedForPoll(bool isPaused) { isPausedForPoll_ = isPaused; }
    /// During a pause: whether to read the connection before reading from the model. At most once a millisecond, so
    /// that reading a hundred windows does not read the connection a hundred times.
    bool isReadDue(Seconds now);

    // Any thread
    bool isPaused() const { return isPaused_; }
    bool isPausedForPoll() const { return isPausedForPoll_; }

  private:
    MainQueue& queue_;
    const int descriptor_;
    DescriptorWatch watch_;
    std::function<void()> readable_;
    std::optional<Subscription> watching_;
    std::shared_ptr<ScheduledWork> end_; // of the pause
    std::atomic<bool> isPaused_{false};
    std::atomic<bool> isPausedForPoll_{false};
    Seconds lastRead_{-1.0}; // uptime of the last reading during a pause
    Lifetime lifetime_;
};

} // namespace kova::x11
