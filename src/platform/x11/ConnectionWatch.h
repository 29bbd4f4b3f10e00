// Watches the connection for the main thread, or leaves it alone for a while: during a rest, and while the polling
// queue waits for replies, since only one thread can read.
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
    /// Does not watch until the pause is over, which counts as something to read, or until `resume`; while it rests for
    /// a poll, until `resume` alone.
    void rest(Seconds pause);
    void stop() { watching_.reset(); }

    // Under a lock of the caller, which also guards whether a poll is reading
    void setRestsForPoll(bool rests) { restsForPoll_ = rests; }
    /// During a rest: whether to look at the connection before reading from the model; at most once a millisecond, so
    /// that reading a hundred windows in one go does not look a hundred times.
    bool isLookDue(Seconds now);

    // Any thread
    bool isResting() const { return isResting_; }
    bool restsForPoll() const { return restsForPoll_; }

  private:
    MainQueue& queue_;
    const int descriptor_;
    DescriptorWatch watch_;
    std::function<void()> readable_;
    std::optional<Subscription> watching_;
    std::shared_ptr<ScheduledWork> end_; // of the rest
    std::atomic<bool> isResting_{false};
    std::atomic<bool> restsForPoll_{false};
    Seconds looked_{-1.0}; // uptime of the last look during a rest
    Lifetime lifetime_;
};

} // namespace kova::x11
