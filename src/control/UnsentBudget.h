// Limits the output that all clients together leave unread. Beyond the limit, clients are disconnected, first the one
// that has read nothing for the longest time. Any thread.
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

    /// The unread output of one client. Once the object is destroyed, this output no longer counts.
    class Account {
      public:
        /// `drop` disconnects the client. It is called at most once, on any thread and with locks held, so it may only
        /// schedule the disconnection.
        Account(UnsentBudget& budget, std::function<void()> drop);
        ~Account();
        Account(const Account&) = delete;
        Account& operator=(const Account&) = delete;

        /// Sets the number of the client's unread bytes; if the number becomes smaller, the client has read some of
        /// them. One client may exceed the limit while the others have no unread bytes.
        void setUnread(std::size_t bytes, Clock::time_point now = Clock::now());
        bool isDropped() const { return isDropped_; }

      private:
        friend class UnsentBudget;
        UnsentBudget& budget_;
        std::function<void()> drop_;
        std::size_t bytes_ = 0;
        Clock::time_point waitingSince_{};
        std::atomic<bool> isDropped_ = false;
    };

    /// The unread bytes of all clients that are not dropped.
    std::size_t unreadBytes() const;

  private:
    void dropUntilWithinLimit(const Account& grown) KOVA_REQUIRES(mutex_);

    const std::size_t bytesAllowed_;
    mutable Mutex mutex_; // also guards the members of the accounts
    std::list<Account*> accounts_ KOVA_GUARDED_BY(mutex_);
    std::size_t unreadBytes_ KOVA_GUARDED_BY(mutex_) = 0;
};

} // namespace kova
