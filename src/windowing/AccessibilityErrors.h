// Interprets the error numbers of a Mac's accessibility interface.
#pragma once

#include "windowing/AccessibilityServicing.h"

#include <map>
#include <span>

namespace kova {

enum class AccessibilityOutcome {
    answered, // done, or refused
    gone,     // the element or its application does not exist any more
    silent    // the application did not respond
};

/// `error` as the Mac numbers it; 0 is success.
AccessibilityOutcome accessibilityOutcome(int error);

/// The presence of an unlisted window by the error of a request to it. A disabled interface, or a failure without a
/// reason, proves nothing about the presence.
WindowPresence windowPresence(int error);

/// Combines the errors of requests for several announcements of one element: it announces if any of them succeeded. A
/// disabled interface is no refusal, since the permission may be granted again.
AnnouncementAnswer announcementAnswer(std::span<const int> errors);

/// Recognizes a permission that the system shows as granted but ignores: every application reports a disabled
/// interface. Single applications may do so for other reasons. So two applications must have reported it three times
/// each, which takes more than one poll, with no other response since.
class IgnoredPermission {
  public:
    static constexpr int kFewestApplications = 2;
    static constexpr int kFewestRefusals = 3;

    void note(pid_t process, int error);
    bool isIgnored() const;

  private:
    std::map<pid_t, int> refusals_; // since the last other response of an application
};

} // namespace kova
