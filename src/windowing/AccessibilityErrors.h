// Interprets the error numbers of a Mac's accessibility interface.
#pragma once

#include "windowing/AccessibilityServicing.h"

#include <map>
#include <span>

namespace kova {

enum class AccessibilityOutcome {
    answered, // the application did or refused what was requested
    gone,     // the element or its application does not exist any more
    silent    // the application did not respond
};

/// `error` as the Mac numbers it; 0 is success.
AccessibilityOutcome accessibilityOutcome(int error);

/// Whether a window that its application does not list exists, by the error of a request to the window. A disabled
/// interface, or a failure without a reason, proves nothing.
WindowPresence windowPresence(int error);

/// Combines the errors of several requests to one element for announcements: `noAnswer` if a request must be repeated,
/// else `announces` if a request succeeded. A disabled interface is not a refusal, since the permission may be granted
/// again.
AnnouncementAnswer announcementAnswer(std::span<const int> errors);

/// Recognizes a permission that the system shows as granted but ignores: then every application reports a disabled
/// interface. A single application may report that for another reason. So the permission counts as ignored only after
/// two applications have reported it three times each (in more than one poll) without any other response in between.
class IgnoredPermission {
  public:
    static constexpr int kFewestApplications = 2;
    static constexpr int kFewestRefusals = 3;

    void note(pid_t process, int error);
    bool isIgnored() const;

  private:
    std::map<pid_t, int> refusals_; // by process; cleared by any other response of an application
};

} // namespace kova
