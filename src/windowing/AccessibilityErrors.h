// What the error numbers of a Mac's accessibility interface mean.
#pragma once

#include "windowing/AccessibilityServicing.h"

#include <cstddef>
#include <set>
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
/// is not polled for the rest.
AnnouncementAnswer announcementAnswer(std::span<const int> errors);

/// Recognizes a permission that the system shows as given and does not honor: every application answers that the
/// interface is disabled. One application alone may do so for reasons of its own.
class IgnoredPermission {
  public:
    static constexpr std::size_t kFewestApplications = 2;

    void note(pid_t process, int error);
    bool isIgnored() const { return refusing_.size() >= kFewestApplications; }

  private:
    std::set<pid_t> refusing_; // since an application last answered otherwise
};

} // namespace kova
