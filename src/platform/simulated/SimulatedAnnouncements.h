// Records which applications and windows of the simulated desktop KOVA has requested to announce their changes, and
// decides which announcements are lost.
#pragma once

#include "support/MainQueue.h"
#include "windowing/AccessibilityServicing.h"

#include <cstdint>
#include <set>
#include <utility>

namespace kova {

/// How applications and their windows announce changes.
enum class AnnouncementStyle {
    always,    // every change is announced at once
    onRequest, // a change is announced after `kDelay`, and only if KOVA has requested announcements of the element
};

class SimulatedAnnouncements {
  public:
    static constexpr Seconds kDelay{0.05};

    void setStyle(AnnouncementStyle style) { style_ = style; }
    AnnouncementStyle style() const { return style_; }
    /// The application never announces anything.
    void refuse(pid_t process) { refusing_.insert(process); }
    /// The next `count` announcements are lost.
    void lose(int count) { announcementsToLose_ = count; }
    /// The number of changes since the start that were not announced although KOVA had requested it.
    int lostCount() const { return lostCount_; }
    /// Counts a change that is not announced. With the style `always` no announcement can be lost.
    void noteLoss() { lostCount_ += style_ == AnnouncementStyle::onRequest ? 1 : 0; }
    /// The number of calls of `request` since the start.
    int requestCount() const { return requestCount_; }

    AnnouncementResponse request(const AccessibilityElement& element);
    void end(const AccessibilityElement& element);
    /// The system drops all requests, as it does when the permission is withdrawn. Announcements of these elements are
    /// lost until KOVA repeats or ends its requests.
    void endAll() { dropped_.merge(std::exchange(requested_, {})); }
    /// Call at each change of an element. Returns whether the change is announced, and counts the announcement if it is
    /// lost. The hash 0 stands for the application itself.
    bool noteChange(pid_t process, std::uint64_t hash);

  private:
    AnnouncementStyle style_ = AnnouncementStyle::always;
    std::set<std::pair<pid_t, std::uint64_t>> requested_, dropped_;
    std::set<pid_t> refusing_;
    int announcementsToLose_ = 0;
    int lostCount_ = 0;
    int requestCount_ = 0;
};

} // namespace kova
