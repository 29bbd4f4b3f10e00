// Which applications and windows of the simulated desktop were requested to announce their changes, and which
// announcements are lost.
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
    onRequest, // only changes of elements that were requested to announce them, and a little late
};

class SimulatedAnnouncements {
  public:
    static constexpr Seconds kDelay{0.05};

    void setStyle(AnnouncementStyle style) { style_ = style; }
    AnnouncementStyle style() const { return style_; }
    /// The application never announces anything.
    void refuse(pid_t process) { refusing_.insert(process); }
    /// The next `count` announcements are lost.
    void lose(int count) { toLose_ = count; }
    /// The number of changes since the start that were not announced although that was requested.
    int lostCount() const { return lostCount_; }
    void noteLoss() { lostCount_ += style_ == AnnouncementStyle::onRequest ? 1 : 0; }
    /// The number of requests since the start, each for one element.
    int requestCount() const { return requestCount_; }

    AnnouncementAnswer request(const AccessibilityElement& element);
    void end(const AccessibilityElement& element);
    /// The system drops all requests, as it does when the permission is withdrawn. Announcements of these elements are
    /// lost until KOVA repeats or ends its requests.
    void endAll() { dropped_.merge(std::exchange(requested_, {})); }
    /// Call at each change of the element: returns whether the change is announced, and counts it if its announcement
    /// is lost. With the hash 0 the element is the application.
    bool noteChange(pid_t process, std::uint64_t hash);

  private:
    AnnouncementStyle style_ = AnnouncementStyle::always;
    std::set<std::pair<pid_t, std::uint64_t>> requested_, dropped_;
    std::set<pid_t> refusing_;
    int toLose_ = 0;
    int lostCount_ = 0;
    int requestCount_ = 0;
};

} // namespace kova
