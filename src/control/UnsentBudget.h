// Limits the unread output of all clients together: beyond the limit the clients that have read nothing for the longest
// time are dropped. Any thread.
#pragma once

#include "support/Mutex.h"

#include <atomic>
#include <chrono>
#include <cstddef>
#include <functional>
#include <list>
#include <memory>

namespace kova {

class UnsentBudget {
  public:
    using Clock = std::chrono::steady_clock;

    explicit UnsentBudget(std::size_t bytes) : bytesAllowed_(bytes) {}

    /// The share of one client, released when the object is destroyed.
    class Account {
      public:
        /// `drop` is called at most once, from any thread and with locks held: it may only schedule the closing of
        /// the client.
        Account(UnsentBudget& budget, std::function<void()> drop);
        ~Account();
        Account(const Account&) = delete;
        Account& operator=(const Account&) = delete;

        /// Sets the number of the client's unread bytes; a smaller number than before means that the client has read
        /// some. A client may hold more than the limit while no other client holds anything.
        void hold(std::size_t bytes, Clock::time_point now = Clock::now());
        bool isDropped() const { return isDropped_; }

      private:
        friend class UnsentBudget;
        UnsentBudget& budget_;
        std::function<void()> drop_;
        std::size_t bytes_ = 0;
        Clock::time_point waitingSince_{};
        std::atomic<bool> isDropped_ = false;
    };

    std::size_t bytesHeld() const;

  private:
    void dropUntilItFits(const Account& charged) KOVA_REQUIRES(mutex_);

    const std::size_t bytesAllowed_;
    mutable Mutex mutex_; // guards the accounts' members, too
    std::list<Account*> accounts_ KOVA_GUARDED_BY(mutex_);
    std::size_t bytesHeld_ KOVA_GUARDED_BY(mutex_) = 0; // of the accounts that are not dropped
};

} // namespace kova
