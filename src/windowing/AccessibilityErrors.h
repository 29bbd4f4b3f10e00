// Interprets the error numbers of a Mac's accessibility interface.
#pragma once

#include "windowing/AccessibilityServicing.h"

#include <map>
#include <span>

namespace kova {

enum class AccessibilityOutcome {
    responded,      // the application did or refused what was requested
    invalidElement, // the element or its application does not exist any more
    noResponse      // the application did not respond
};

/// `error` is an error number of the Mac; 0 is success.
AccessibilityOutcome accessibilityOutcome(int error);

/// Whether a window that its application does not list still exists, judged by the error of a request to the window. A
/// disabled interface and a failure without a reason count as `noResponse`, since they prove nothing.
WindowPresence windowPresence(int error);

/// An element gets one request for each kind of announcement. This function combines the errors of these requests:
/// `noResponse` if the requests must be repeated, else `announces` if one of them succeeded, else `refuses`. A disabled
/// interface counts as `noResponse`, since the permission may be granted again.
AnnouncementResponse announcementResponse(std::span<const int> errors);

/// Recognizes a permission that the system shows as granted but ignores. In this state every application reports a
/// disabled interface. A single application may report a disabled interface for another reason. So the permission
/// counts as ignored only after two applications have reported it three times each (in more than one poll), and no
/// application has given any other response in between.
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
