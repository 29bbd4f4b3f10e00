// Requests that applications and windows announce their changes, and decides whether the announcements make polls
// unnecessary. Used only where announcements must be requested, as on a Mac. Polling queue only. Always true: a request
// to an element is repeated only if there was no response; an unresponsive application gets one request per poll.
#pragma once

#include "windowing/AccessibilityWindowService.h"

#include <map>
#include <string>

namespace kova {

class ChangeAnnouncements {
  public:
    /// Polls continue for this long after an application stopped responding, since its changes are not announced. Later
    /// changes are found by the polls of `DesktopChangeServicing::longestIdleTime`.
    static constexpr Seconds kPollingAfterTimeout{60};

    /// `desktop` must outlive this object.
    explicit ChangeAnnouncements(DesktopChangeServicing& desktop) : desktop_(desktop) {}

    /// Requests announcements of new elements and ends those of closed elements. Returns whether polls may stop. They
    /// must continue if an element has just got its request (it may have changed before), if an application with
    /// windows refuses, or if one stopped responding less than `kPollingAfterTimeout` ago. `now` is the uptime.
    bool follow(const WindowEnumeration& found, Seconds now);
    /// Ends all announcements; the next `follow` observes every element again.
    void endAll();

  private:
    enum class State { announces, refuses, silent };
    struct Element {
        AccessibilityElement element;
        State state = State::silent;
    };
    void endThoseNotIn(const std::map<WindowID, AccessibilityElement>& present);

    DesktopChangeServicing& desktop_;
    std::map<WindowID, Element> elements_; // by window id; applications by "PID:0"
    std::map<pid_t, Seconds> silentSince_; // uptime
};

} // namespace kova
