// The main queue on Linux: one thread that sleeps until work is posted, a timer is due, a descriptor has something to
// read, or a signal requests the process to end. For no other reason does the thread wake up.
#pragma once

#include "support/MainQueue.h"
#include "support/Published.h"

#include <functional>
#include <memory>

namespace kova {

class EventLoop final : public MainQueue {
  public:
    EventLoop();
    ~EventLoop() override;
    EventLoop(const EventLoop&) = delete;
    EventLoop& operator=(const EventLoop&) = delete;

    void post(std::function<void()> work) override;
    std::shared_ptr<ScheduledWork> after(Seconds delay, std::function<void()> work) override;
    WallTime now() const override;
    /// The clock of the timers, which stops while the machine sleeps, as on the Mac.
    Seconds uptime() const override;

    /// Calls back while the descriptor has something to read, or was closed at its other end, until the subscription is
    /// dropped. The caller remains responsible for closing the descriptor, after dropping the subscription. Main thread
    /// only.
    [[nodiscard]] Subscription watchReadable(int descriptor, std::function<void()> readable);

    /// When SIGTERM, SIGINT or SIGHUP arrives, calls `stop` instead of ending the process. Call once, before `run`.
    void onStopSignal(std::function<void()> stop);

    /// Runs until `quit` and returns its exit code. Posted work that has not run by then runs if `run` is called again.
    /// The calling thread becomes the main thread.
    int run();
    /// Ends `run` after the work that runs now; the first call decides the exit code. Main thread only.
    void quit(int exitCode);

  private:
    struct Loop;
    class Timer;
    class Watch;
    std::unique_ptr<Loop> loop_;
};

} // namespace kova
