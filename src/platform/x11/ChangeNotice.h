// Counts the changes that a poll would see. Calls back once as soon as the count differs from the count that the caller
// has passed.
#pragma once

#include "support/Lifetime.h"
#include "support/MainQueue.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <utility>

namespace kova::x11 {

class ChangeNotice {
  public:
    explicit ChangeNotice(MainQueue& queue) : queue_(queue) {}

    // Any thread
    void note() { count_.fetch_add(1); }
    std::uint64_t count() const { return count_.load(); }
    bool isAwaited() const { return isAwaited_; }

    // Main thread
    /// `callback` runs on the main queue once the count differs from `count`. It replaces the former callback; an empty
    /// function only removes the former callback. Call `callBackIfDue` afterwards, since the count may differ already.
    void await(std::uint64_t count, std::function<void()> callback) {
        callback_ = std::move(callback);
        awaitedCount_ = count;
        isAwaited_ = static_cast<bool>(callback_);
    }
    void callBackIfDue() {
        if (!callback_ || count_ == awaitedCount_) return;
        isAwaited_ = false;
        queue_.post(lifetime_.guard(std::exchange(callback_, {})));
    }

  private:
    MainQueue& queue_;
    std::atomic<std::uint64_t> count_{1};
    std::atomic<bool> isAwaited_{false};
    std::uint64_t awaitedCount_ = 0;
    std::function<void()> callback_;
    Lifetime lifetime_;
};

} // namespace kova::x11
