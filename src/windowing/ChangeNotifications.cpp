#include "windowing/ChangeNotifications.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace kova {

std::optional<std::uint64_t> ChangeNotifications::reliableCount() const {
    // A longest idle time means that announcements can get lost.
    return changes_.longestIdleTime() ? std::nullopt : changes_.changeCount();
}

Subscription ChangeNotifications::notifyWhenChanged(std::uint64_t count, std::function<void()> callback) {
    auto waiting =
        std::make_shared<Waiting>(count, std::move(callback), lifetime_.guard([this] { stopIfNoneWaits(); }));
    waiting_.push_back(waiting);
    awaitNext();
    return Subscription(std::move(waiting));
}

/// Cancels the desktop's notification if no subscription is left. A subscription may be dropped during any operation,
/// and a request for a notification may make the desktop read events. So this function requests no new notification for
/// the remaining subscriptions.
void ChangeNotifications::stopIfNoneWaits() {
    std::erase_if(waiting_, [](const auto& waiting) { return waiting.expired(); });
    if (waiting_.empty()) changes_.notifyWhenChanged(0, {});
}

/// Waits for the first change since any of the awaited counts.
void ChangeNotifications::awaitNext() {
    stopIfNoneWaits();
    if (waiting_.empty()) return;
    auto oldest = std::numeric_limits<std::uint64_t>::max();
    for (const auto& weak : waiting_) {
        if (const auto waiting = weak.lock()) oldest = std::min(oldest, waiting->count);
    }
    changes_.notifyWhenChanged(oldest, lifetime_.guard([this] { notifyDue(); }));
}

void ChangeNotifications::notifyDue() {
    const auto count = changes_.changeCount();
    std::vector<std::weak_ptr<Waiting>> due;
    std::erase_if(waiting_, [&](const std::weak_ptr<Waiting>& weak) {
        const auto waiting = weak.lock();
        if (waiting && waiting->count == count) return false;
        due.push_back(weak);
        return true;
    });
    awaitNext();
    for (const auto& weak : due) {
        // A callback may have dropped the subscription of a later one.
        if (const auto waiting = weak.lock()) waiting->callback();
    }
}

} // namespace kova
