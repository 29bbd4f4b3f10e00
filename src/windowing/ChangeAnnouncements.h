// Requests that applications and windows announce their changes, and decides whether the announcements make polls
// unnecessary. Used only where announcements must be requested, as on a Mac. Polling queue only. Always true: a request
// to an element is repeated only if the element did not respond; an unresponsive application gets at most one request
// per poll.
#pragma once

#include "windowing/AccessibilityWindowService.h"

#include <map>
#include <string>

namespace kova {

class ChangeAnnouncements {
  public:
    /// An unresponsive application does not announce its changes, so polls continue for this long after it stopped
    /// responding. Later changes are found by the polls that `DesktopChangeServicing::longestIdleTime` requires.
    static constexpr Seconds kPollingAfterTimeout{60};

    /// `desktop` must outlive this object.
    explicit ChangeAnnouncements(DesktopChangeServicing& desktop) : desktop_(desktop) {}

    /// Requests announcements of new elements and ends those of closed elements. Returns whether polls may stop.
    /// Polls must continue in three cases: an element has just accepted its request, since it may have changed before;
    /// an application with windows refuses; an application stopped responding less than `kPollingAfterTimeout` ago.
    /// `now` is the uptime.
    bool follow(const WindowEnumeration& found, Seconds now);
    /// Ends all announcements; the next `follow` requests those of every element again.
    void endAll();

  private:
    enum class State { announces, refuses, noResponse };
    struct Element {
        AccessibilityElement element;
        State state = State::noResponse;
    };
    void endThoseNotIn(const std::map<WindowID, AccessibilityElement>& present);

    DesktopChangeServicing& desktop_;
    std::map<WindowID, Element> elements_;       // by window id; applications by "PID:0"
    std::map<pid_t, Seconds> unresponsiveSince_; // uptime
};

} // namespace kova
