// Applications that were told to hide or to come back. The desktop tells only later that they have; in the meantime
// they count as having done it, so that who hides and shows in one go reads what it has asked for.
#pragma once

#include "support/MainQueue.h"

#include <sys/types.h>

#include <map>

namespace kova {

class HidingWishes {
  public:
    /// For how long an application counts as doing what it was told; then as what the desktop says.
    static constexpr Seconds kPatience{1};

    /// All times are uptimes.
    void hide(pid_t process, Seconds now) { note(process, Wish{true, now}); }
    void show(pid_t process, Seconds now) { note(process, Wish{false, now}); }
    /// `isToldHidden`: what the desktop says.
    bool isHidden(pid_t process, bool isToldHidden, Seconds now) const;

  private:
    struct Wish {
        bool isHidden = false;
        Seconds asked{};
    };
    void note(pid_t process, Wish wish);

    std::map<pid_t, Wish> wishes_; // the newest of each process
};

} // namespace kova
