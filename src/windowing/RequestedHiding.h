// Applications that were told to hide or to come back. The desktop tells only later that they have; in the meantime
// they count as having done it, so that an operation that hides and shows reads what it has requested.
#pragma once

#include "support/MainQueue.h"

#include <sys/types.h>

#include <map>

namespace kova {

class RequestedHiding {
  public:
    /// For how long an application counts as doing what it was told; then as what the desktop says.
    static constexpr Seconds kTellingTime{1};

    /// All times are uptimes.
    void hide(pid_t process, Seconds now) { note(process, Request{true, now}); }
    void show(pid_t process, Seconds now) { note(process, Request{false, now}); }
    /// `isToldHidden`: what the desktop says.
    bool isHidden(pid_t process, bool isToldHidden, Seconds now) const;

  private:
    struct Request {
        bool isHidden = false;
        Seconds asked{};
    };
    void note(pid_t process, Request request);

    std::map<pid_t, Request> requests_; // the newest of each process
};

} // namespace kova
