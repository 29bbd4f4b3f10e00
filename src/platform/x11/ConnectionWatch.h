// Notifies the main thread when there is something to read from the connection to the X server. Does not watch the
// connection during a pause, nor while the polling queue waits for replies, since only one thread can read from it.
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

/// Makes the main loop watch a descriptor: it calls `readable` whenever there is something to read, until the
/// subscription is dropped.
using DescriptorWatch = std::function<Subscription(int descriptor, std::function<void()> readable)>;

class ConnectionWatch {
  public:
    ConnectionWatch(MainQueue& queue, int descriptor) : queue_(queue), descriptor_(descriptor) {}

    // Main thread
    void begin(DescriptorWatch watch, std::function<void()> readable);
    /// Ends the pause, and watches the connection from now on.
    void resume();
    /// Stops watching until `resume`. If no poll is reading, `readable` is called after the time `pause`. No-op before
    /// `begin`.
    void pause(Seconds pause);
    void stop() { watching_.reset(); }

    // Call with the mutex of X11Parts held
    void setPausedForPoll(bool isPaused) { isPausedForPoll_ = isPaused; }
    /// True if the caller must read the connection before it reads the model: only during a pause, and at most once a
    /// millisecond, so that reading a hundred windows does not read the connection a hundred times.
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
    std::shared_ptr<ScheduledWork> pauseEnd_; // calls `readable_` at the end of the pause
    std::atomic<bool> isPaused_{false};
    std::atomic<bool> isPausedForPoll_{false};
    Seconds lastRead_{-1.0}; // uptime of the last reading during a pause
    Lifetime lifetime_;
};

} // namespace kova::x11
