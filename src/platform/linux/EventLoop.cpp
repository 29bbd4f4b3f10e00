#include "platform/linux/EventLoop.h"

#include <asio.hpp>

#include <algorithm>
#include <csignal>
#include <ctime>
#include <optional>
#include <utility>

namespace kova {

struct EventLoop::Loop {
    // Only one thread runs the context; others only post.
    asio::io_context context{1};
    asio::executor_work_guard<asio::io_context::executor_type> staysOpen{context.get_executor()};
    asio::signal_set signals{context};
    std::optional<int> exitCode;
};

class EventLoop::Timer final : public ScheduledWork, public std::enable_shared_from_this<Timer> {
  public:
    Timer(asio::io_context& context, std::function<void()> work) : timer_(context), work_(std::move(work)) {}

    /// The pending wait owns the timer, so that dropping the handle does not cancel the work.
    void start(std::chrono::steady_clock::duration delay) {
        timer_.expires_after(delay);
        timer_.async_wait([self = shared_from_this()](const asio::error_code&) { self->fire(); });
    }
    void startNow(asio::io_context& context) {
        asio::post(context, [self = shared_from_this()] { self->fire(); });
    }
    void cancel() override {
        work_ = nullptr; // canceling the timer has no effect if its handler is already queued
        timer_.cancel();
    }

  private:
    void fire() {
        if (const auto work = std::exchange(work_, nullptr)) work();
    }

    asio::steady_timer timer_;
    std::function<void()> work_;
};

class EventLoop::Watch final : public std::enable_shared_from_this<Watch> {
  public:
    Watch(asio::io_context& context, int descriptor, std::function<void()> readable) :
        descriptor_(context, descriptor), readable_(std::move(readable)) {}
    ~Watch() { descriptor_.release(); }

    /// The pending wait does not own the watch, so that dropping the subscription ends the watch.
    void wait() {
        descriptor_.async_wait(asio::posix::descriptor_base::wait_read,
                               [weak = weak_from_this()](const asio::error_code& error) {
                                   const auto self = weak.lock();
                                   if (!self || error) return;
                                   self->readable_();
                                   self->wait();
                               });
    }

  private:
    asio::posix::stream_descriptor descriptor_;
    std::function<void()> readable_;
};

EventLoop::EventLoop() : loop_(std::make_unique<Loop>()) {}

EventLoop::~EventLoop() = default;

void EventLoop::post(std::function<void()> work) {
    asio::post(loop_->context, std::move(work));
}

std::shared_ptr<ScheduledWork> EventLoop::after(Seconds delay, std::function<void()> work) {
    // A delay beyond the clock's range would overflow and be due at once.
    constexpr Seconds kForever = std::chrono::hours(24 * 365);
    auto timer = std::make_shared<Timer>(loop_->context, std::move(work));
    if (delay > Seconds::zero()) {
        // Rounded up: nothing runs before it is due.
        timer->start(std::chrono::ceil<std::chrono::steady_clock::duration>(std::min(delay, kForever)));
    } else {
        timer->startNow(loop_->context);
    }
    return timer;
}

WallTime EventLoop::now() const {
    return std::chrono::system_clock::now();
}

Seconds EventLoop::uptime() const {
    timespec time{};
    clock_gettime(CLOCK_MONOTONIC, &time);
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

Subscription EventLoop::watchReadable(int descriptor, std::function<void()> readable) {
    auto watch = std::make_shared<Watch>(loop_->context, descriptor, std::move(readable));
    watch->wait();
    return Subscription(std::move(watch));
}

void EventLoop::onStopSignal(std::function<void()> stop) {
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) loop_->signals.add(signal);
    loop_->signals.async_wait([this, stop = std::move(stop)](const asio::error_code& error, int) {
        if (error) return;
        // Restores the default action, so that a second signal ends the process at once.
        loop_->signals.clear();
        stop();
    });
}

int EventLoop::run() {
    loop_->context.restart();
    loop_->context.run();
    return std::exchange(loop_->exitCode, std::nullopt).value_or(0);
}

void EventLoop::quit(int exitCode) {
    if (!loop_->exitCode) loop_->exitCode = exitCode;
    loop_->context.stop();
}

} // namespace kova
