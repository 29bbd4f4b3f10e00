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
    unasked,   // every change is announced at once
    whenAsked, // only by observed elements, and a little late
};

class SimulatedAnnouncements {
  public:
    static constexpr Seconds kDelay{0.05};

    void setStyle(AnnouncementStyle style) { style_ = style; }
    AnnouncementStyle style() const { return style_; }
    /// The application never announces anything.
    void refuse(pid_t process) { refusing_.insert(process); }
    /// The next announcements are lost.
    void lose(int count) { toLose_ = count; }
    /// Changes since the start without an announcement although it was requested.
    int lostCount() const { return lostCount_; }
    void noteLoss() { lostCount_ += style_ == AnnouncementStyle::whenAsked ? 1 : 0; }
    /// Requests since the start, each for one element.
    int requestCount() const { return requestCount_; }

    AnnouncementAnswer request(const AccessibilityElement& element);
    void end(const AccessibilityElement& element);
    /// The system drops what was requested, as it does with the permission. Until KOVA ends or repeats its requests,
    /// their announcements are lost.
    void endAll() { dropped_.merge(std::exchange(asked_, {})); }
    /// Whether the element, an application where the hash is 0, announces its latest change.
    bool isAnnounced(pid_t process, std::uint64_t hash);

  private:
    AnnouncementStyle style_ = AnnouncementStyle::unasked;
    std::set<std::pair<pid_t, std::uint64_t>> asked_, dropped_;
    std::set<pid_t> refusing_;
    int toLose_ = 0;
    int lostCount_ = 0;
    int requestCount_ = 0;
};

} // namespace kova
