// Writes frames to applications that would animate them. A Mac application animates its windows while its enhanced user
// interface is on, as it is for VoiceOver, and answers with frames on the way. Main thread.
// Always true: an application is asked once in a series of writes, however many of its windows are written to, and has
// its enhanced user interface back soon after the last write.
#pragma once

#include "support/Lifetime.h"
#include "support/MainQueue.h"
#include "windowing/AccessibilityServicing.h"

#include <map>
#include <span>

namespace kova {

class FrameAnimations {
  public:
    /// A series of writes ends with a pause of this length; it is longer than the verification of a placement.
    static constexpr Seconds kPause{1};

    /// Both outlive it.
    FrameAnimations(AccessibilityServicing& accessibility, MainQueue& queue) :
        accessibility_(accessibility), queue_(queue) {}
    ~FrameAnimations() { endSeries(); }
    FrameAnimations(const FrameAnimations&) = delete;
    FrameAnimations& operator=(const FrameAnimations&) = delete;

    /// Writes positions and sizes to the window.
    void write(const AccessibilityElement& window, std::span<const AttributeWrite> frame);
    /// Every application has back what was switched off.
    void endSeries();

  private:
    void endLater();
    void switchEnhancedInterface(pid_t process, bool on);

    AccessibilityServicing& accessibility_;
    MainQueue& queue_;
    std::map<pid_t, bool> wasOn_; // applications of the series
    Seconds lastWrite_{0};        // uptime
    Lifetime lifetime_;
};

} // namespace kova
