// Which applications and windows were asked to announce their changes, and whether polls may rest on that. Needed only
// where announcements have to be asked for, as on a Mac. Polling queue only.
// Always true: each element is asked once, and again only while it has not answered; of an application that does not
// answer one element is asked in a poll.
#pragma once

#include "windowing/AccessibilityWindowService.h"

#include <map>
#include <string>

namespace kova {

class ChangeAnnouncements {
  public:
    /// Polls go on for so long after an application stopped answering, or began without: its next window, or its
    /// return, is not announced. Afterwards it is found by the polls that `DesktopChangeServicing::longestRest` leaves.
    static constexpr Seconds kAttention{60};

    /// The desktop outlives it.
    explicit ChangeAnnouncements(DesktopChangeServicing& desktop) : desktop_(desktop) {}

    /// Asks what the poll found anew and ends what has gone. False while polls must not rest: an element was asked just
    /// now and may have changed before that, an application with windows refuses, or one has not answered for less than
    /// `kAttention`. `now` in uptime.
    bool follow(const WindowEnumeration& found, Seconds now);

  private:
    enum class State { announces, refuses, silent };
    struct Element {
        AccessibilityElement element;
        State state = State::silent;
    };
    void endThoseNotIn(const std::map<std::string, AccessibilityElement>& present);

    DesktopChangeServicing& desktop_;
    std::map<std::string, Element> elements_; // by window id; applications by "PID:0"
    std::map<pid_t, Seconds> silentSince_;    // uptime
};

} // namespace kova
