#include "windowing/HidingWishes.h"

namespace kova {

bool HidingWishes::isHidden(pid_t process, bool isToldHidden, Seconds now) const {
    const auto found = wishes_.find(process);
    const bool isRecent = found != wishes_.end() && now - found->second.asked < kPatience;
    return isRecent ? found->second.isHidden : isToldHidden;
}

void HidingWishes::note(pid_t process, Wish wish) {
    std::erase_if(wishes_, [&](const auto& entry) { return wish.asked - entry.second.asked >= kPatience; });
    wishes_[process] = wish;
}

} // namespace kova
