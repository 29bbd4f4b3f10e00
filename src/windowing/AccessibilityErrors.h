// What the error numbers of a Mac's accessibility interface mean.
#pragma once

#include "windowing/AccessibilityServicing.h"

#include <map>
#include <span>

namespace kova {

enum class AccessibilityOutcome {
    answered, // done, or refused by an application that is well
    gone,     // the element, or its application, is no more
    silent    // the application did not answer
};

/// `error` as the Mac numbers it; 0 is success.
AccessibilityOutcome accessibilityOutcome(int error);

/// What the answer to a question to a window that is not listed says of it. An interface that is switched off, and a
/// failure without a reason, say nothing.
WindowPresence windowPresence(int error);

/// What the answers to requests for several announcements of one element come to: an element that announces something
/// is not polled for the rest. An interface that is disabled is no refusal: the permission may come back.
AnnouncementAnswer announcementAnswer(std::span<const int> errors);

/// Recognizes a permission that the system shows as given and does not honor: every application answers that the
/// interface is disabled. Single applications may do so for reasons of their own, so that no other answer may have come
/// for as long as each of two was asked three times, which takes more than one poll.
class IgnoredPermission {
  public:
    static constexpr int kFewestApplications = 2;
    static constexpr int kFewestRefusals = 3;

    void note(pid_t process, int error);
    bool isIgnored() const;

  private:
    std::map<pid_t, int> refusals_; // since an application last answered otherwise
};

} // namespace kova
