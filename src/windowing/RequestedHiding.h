// Requests to hide or to show an application. The desktop reports the result late. Until then the requested state
// counts, so that an operation that hides and shows applications sees the effect of its own requests.
#pragma once

#include "support/MainQueue.h"

#include <sys/types.h>

#include <map>

namespace kova {

class RequestedHiding {
  public:
    /// How long the requested state counts; after that time the reported state counts.
    static constexpr Seconds kReportingTime{1};

    /// All times are uptimes.
    void hide(pid_t process, Seconds now) { note(process, Request{true, now}); }
    void show(pid_t process, Seconds now) { note(process, Request{false, now}); }
    /// `isReportedHidden`: the state that the desktop reports.
    bool isHidden(pid_t process, bool isReportedHidden, Seconds now) const;

  private:
    struct Request {
        bool isHidden = false;
        Seconds time{};
    };
    void note(pid_t process, Request request);

    std::map<pid_t, Request> requests_; // the newest of each process
};

} // namespace kova
