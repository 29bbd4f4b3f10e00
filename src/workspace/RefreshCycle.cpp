#include "workspace/RefreshCycle.h"

#include <cmath>
#include <cstdlib>
#include <limits>
#include <utility>

namespace kova {

namespace {

PollResult poll(const AccessibilityWindowService& service, const SessionServicing& session,
                const DesktopChangeServicing& changes, ChangeAnnouncements* announcements,
                const std::vector<KnownWindow>& known, Seconds begun) {
    PollResult result;
    result.begun = begun;
    result.changeCount = changes.changeCount();
    result.isSessionLocked = session.isLoginSessionScreenLocked();
    result.permissionState = service.permissionState();
    const bool isReadable = result.permissionState == AccessibilityPermissionState::granted && !result.isSessionLocked;
    if (isReadable) result.windows = service.enumerateWindows(known);
    // The responses of applications reveal a stale permission, so it is checked after the enumeration.
    if (isReadable && service.stalePermission()) result.permissionState = AccessibilityPermissionState::denied;
    if (!announcements) return result;
    // The system drops all observers when the permission is withdrawn.
    if (result.permissionState != AccessibilityPermissionState::granted) announcements->endAll();
    // The desktop announces neither the grant of the permission nor the unlock of the screen.
    const bool announcesAllChanges = isReadable && result.permissionState == AccessibilityPermissionState::granted &&
                                     announcements->follow(result.windows, begun);
    if (!announcesAllChanges) result.changeCount.reset();
    return result;
}

} // namespace

RefreshCycle::RefreshCycle(std::shared_ptr<AccessibilityWindowService> service, SessionServicing& session,
                           DesktopChangeServicing& changes, ChangeNotifications& notifications, MainQueue& queue,
                           WorkQueue& pollingQueue, Callbacks callbacks) :
    service_(std::move(service)),
    session_(session), changes_(changes), notifications_(notifications), queue_(queue), pollingQueue_(pollingQueue),
    callbacks_(std::move(callbacks)),
    announcements_(changes.announcesWithoutRequest() ? nullptr : std::make_shared<ChangeAnnouncements>(changes)) {}

RefreshCycle::~RefreshCycle() {
    stopTimer();
    if (waitingDeadline_) waitingDeadline_->cancel();
}

void RefreshCycle::begin() {
    isRunning_ = true;
    isSuspended_ = false;
    invalidateOlderPolls();
}

void RefreshCycle::end() {
    isRunning_ = false;
    isSuspended_ = false;
    invalidateOlderPolls();
    stopTimer();
}

void RefreshCycle::suspend() {
    isSuspended_ = true;
    invalidateOlderPolls();
    stopTimer();
}

void RefreshCycle::resume() {
    isSuspended_ = false;
    invalidateOlderPolls();
}

void RefreshCycle::invalidateOlderPolls() {
    if (generation_ == std::numeric_limits<std::int64_t>::max())
        std::abort(); // after an overflow the results of old polls would count as current
    ++generation_;
    isPollInFlight_ = false;
    appliedChangeCount_.reset();
    // Work that waits for a dropped poll runs without that poll, with the windows of the last result. During a
    // suspension, the work refuses to move windows and gives the reason.
    if (!waiting_.empty()) queue_.post(lifetime_.guard([this] { runAllWaiting(); }));
}

bool RefreshCycle::awaitCurrent(std::function<void()> work) {
    const auto count = notifications_.reliableCount();
    const bool isCurrent = count && count == appliedChangeCount_;
    if (waiting_.empty() && (isCurrent || !isRunning_ || isSuspended_)) return false;
    if (waiting_.empty()) {
        waitingDeadline_ = queue_.after(kLongestWait, lifetime_.guard([this] { runAllWaiting(); }));
    }
    waiting_.push_back({polls_ + 1, std::move(work)});
    refresh();
    return true;
}

void RefreshCycle::runAllWaiting() {
    runWaiting(std::numeric_limits<std::int64_t>::max());
}

void RefreshCycle::runWaiting(std::int64_t newestPoll) {
    std::vector<std::function<void()>> due;
    for (; !waiting_.empty() && waiting_.front().poll <= newestPoll; waiting_.pop_front()) {
        due.push_back(std::move(waiting_.front().work));
    }
    if (waiting_.empty() && waitingDeadline_) std::exchange(waitingDeadline_, nullptr)->cancel();
    for (const auto& work : due) work();
    if (!waiting_.empty()) refresh();
}

void RefreshCycle::refresh() {
    if (!isRunning_ || isSuspended_ || isPollInFlight_) return;
    isPollInFlight_ = true;
    auto deliver = lifetime_.guard([this](PollResult& result, std::int64_t generation, std::int64_t poll) {
        receive(std::move(result), generation, poll);
    });
    pollingQueue_.post([service = service_, &session = session_, &changes = changes_, &queue = queue_,
                        announcements = announcements_, generation = generation_, number = ++polls_,
                        known = callbacks_.knownWindows(), begun = queue_.uptime(),
                        deliver = std::move(deliver)]() mutable {
        auto result = std::make_shared<PollResult>(poll(*service, session, changes, announcements.get(), known, begun));
        // The result keeps the service alive, so that the last reference is released on the main thread.
        queue.post([result, generation, number, service = std::move(service), deliver = std::move(deliver)]() mutable {
            deliver(*result, generation, number);
        });
    });
}

void RefreshCycle::receive(PollResult result, std::int64_t generation, std::int64_t poll) {
    if (generation != generation_) return;
    isPollInFlight_ = false;
    if (!isRunning_ || isSuspended_) return;
    appliedChangeCount_ = result.changeCount;
    hasResult_ = true;
    callbacks_.apply(std::move(result));
    runWaiting(poll);
    if (timer_ && !isIdle_ && mayBeIdle()) becomeIdle(); // otherwise the next tick would wake the agent for nothing
}

void RefreshCycle::startTimer() {
    stopTimer();
    nextTick_ = queue_.uptime() + kInterval;
    scheduleTick();
}

void RefreshCycle::stopTimer() {
    if (timer_) timer_->cancel();
    timer_.reset();
    isIdle_ = false;
    nextChange_ = {};
}

void RefreshCycle::scheduleTick() {
    timer_ = queue_.after(nextTick_ - queue_.uptime(), lifetime_.guard([this] { tick(); }));
}

bool RefreshCycle::mayBeIdle() const {
    return !isPollInFlight_ && appliedChangeCount_ && changes_.changeCount() == appliedChangeCount_ &&
           !callbacks_.isWaiting();
}

void RefreshCycle::tick() {
    nextTick_ += kInterval;
    if (nextTick_ <= queue_.uptime()) nextTick_ = queue_.uptime() + kInterval; // the machine was busy or asleep
    if (mayBeIdle()) return becomeIdle();
    refresh();
    scheduleTick();
}

/// No poll runs until the next change or the longest idle time. Later polls stay at multiples of `kInterval` from the
/// earlier ones.
void RefreshCycle::becomeIdle() {
    timer_->cancel();
    timer_.reset();
    isIdle_ = true;
    if (const auto longest = changes_.longestIdleTime()) {
        timer_ = queue_.after(*longest, lifetime_.guard([this] { pollAfterIdleTime(); }));
    }
    nextChange_ = notifications_.notifyWhenChanged(*appliedChangeCount_, lifetime_.guard([this] { resumeTicking(); }));
}

/// Polls although no change was announced, since an announcement may have been lost.
void RefreshCycle::pollAfterIdleTime() {
    wake();
    refresh();
}

void RefreshCycle::wake() {
    resumeTicking();
}

void RefreshCycle::resumeTicking() {
    if (!isIdle_) return;
    isIdle_ = false;
    nextChange_ = {};
    if (timer_) timer_->cancel();
    const double missed = std::ceil((queue_.uptime() - nextTick_) / kInterval);
    if (missed > 0) nextTick_ += missed * kInterval;
    scheduleTick();
}

} // namespace kova
