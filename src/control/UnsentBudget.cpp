#include "control/UnsentBudget.h"

#include <utility>

namespace kova {

UnsentBudget::Account::Account(UnsentBudget& budget, std::function<void()> drop) :
    budget_(budget), drop_(std::move(drop)) {
    const MutexLock guard(budget_.mutex_);
    budget_.accounts_.push_back(this);
}

UnsentBudget::Account::~Account() {
    const MutexLock guard(budget_.mutex_);
    budget_.accounts_.remove(this);
    if (!isDropped_) budget_.unreadBytes_ -= bytes_;
}

void UnsentBudget::Account::setUnread(std::size_t bytes, Clock::time_point now) {
    const MutexLock guard(budget_.mutex_);
    if (isDropped_) return;
    if (bytes_ == 0 || bytes < bytes_) waitingSince_ = now;
    budget_.unreadBytes_ += bytes - bytes_;
    bytes_ = bytes;
    budget_.dropUntilWithinLimit(*this);
}

std::size_t UnsentBudget::unreadBytes() const {
    const MutexLock guard(mutex_);
    return unreadBytes_;
}

void UnsentBudget::dropUntilWithinLimit(const Account& grown) {
    while (unreadBytes_ > bytesAllowed_ && unreadBytes_ > grown.bytes_) {
        Account* longest = nullptr;
        for (Account* account : accounts_) {
            if (account->isDropped_ || account->bytes_ == 0) continue;
            if (!longest || account->waitingSince_ < longest->waitingSince_) longest = account;
        }
        longest->isDropped_ = true;
        unreadBytes_ -= longest->bytes_;
        longest->drop_();
        if (longest == &grown) return;
    }
}

} // namespace kova
