#include "platform/macos/DispatchQueues.h"

#include "platform/macos/Contained.h"

#include <algorithm>
#include <atomic>
#include <ctime>
#include <utility>

namespace kova::macos {

namespace {

/// The event handler of the source keeps the timer alive until the work has run or was canceled. So callers need not
/// keep a reference.
class Timer final : public ScheduledWork, public std::enable_shared_from_this<Timer> {
  public:
    explicit Timer(std::function<void()> work) : work_(std::move(work)) {}

    void start(Seconds delay) {
        constexpr Seconds kForever = std::chrono::hours(24 * 365);
        const auto due = std::chrono::ceil<std::chrono::nanoseconds>(std::clamp(delay, Seconds::zero(), kForever));
        source_ = dispatch_source_create(DISPATCH_SOURCE_TYPE_TIMER, 0, 0, dispatch_get_main_queue());
        dispatch_source_set_timer(source_, dispatch_time(DISPATCH_TIME_NOW, due.count()), DISPATCH_TIME_FOREVER,
                                  NSEC_PER_MSEC);
        const auto self = shared_from_this();
        dispatch_source_set_event_handler(source_, ^{
          self->fire();
        });
        dispatch_resume(source_);
    }
    void cancel() override {
        work_ = nullptr; // the handler may already be queued; then it finds no work
        release();
    }

  private:
    void fire() {
        const auto work = std::exchange(work_, nullptr);
        release();
        if (work) contained(work);
    }
    void release() {
        // Canceling the source releases its handler, which releases this object.
        if (source_) dispatch_source_cancel(source_);
        source_ = nil;
    }

    std::function<void()> work_;
    dispatch_source_t source_ = nil;
};

} // namespace

void DispatchMainQueue::post(std::function<void()> work) {
    const auto kept = std::make_shared<std::function<void()>>(std::move(work));
    dispatch_async(dispatch_get_main_queue(), ^{
      contained(*kept);
    });
}

std::shared_ptr<ScheduledWork> DispatchMainQueue::after(Seconds delay, std::function<void()> work) {
    if (delay > Seconds::zero()) {
        auto timer = std::make_shared<Timer>(std::move(work));
        timer->start(delay);
        return timer;
    }
    struct Posted final : ScheduledWork {
        std::function<void()> work;
        void cancel() override { work = nullptr; }
    };
    auto posted = std::make_shared<Posted>();
    posted->work = std::move(work);
    post([posted] {
        if (const auto due = std::exchange(posted->work, nullptr)) due();
    });
    return posted;
}

WallTime DispatchMainQueue::now() const {
    return std::chrono::system_clock::now();
}

Seconds DispatchMainQueue::uptime() const {
    return std::chrono::nanoseconds(clock_gettime_nsec_np(CLOCK_UPTIME_RAW));
}

struct DispatchWorkQueue::Queue {
    dispatch_queue_t queue = nil;
    std::atomic<bool> isEnding = false;
};

DispatchWorkQueue::DispatchWorkQueue(const std::string& label) : queue_(std::make_shared<Queue>()) {
    const auto attributes = dispatch_queue_attr_make_with_qos_class(DISPATCH_QUEUE_SERIAL, QOS_CLASS_USER_INITIATED, 0);
    queue_->queue = dispatch_queue_create(label.c_str(), attributes);
}

DispatchWorkQueue::~DispatchWorkQueue() {
    queue_->isEnding = true;
    dispatch_sync(queue_->queue, ^{
                  });
}

void DispatchWorkQueue::post(std::function<void()> job) {
    const auto kept = std::make_shared<std::function<void()>>(std::move(job));
    const auto queue = queue_;
    dispatch_async(queue->queue, ^{
      if (!queue->isEnding) contained(*kept);
    });
}

} // namespace kova::macos
