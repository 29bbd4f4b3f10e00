// Writes frames to applications that would animate them. A Mac application animates its windows while its enhanced user
// interface is on (for VoiceOver), and reports intermediate frames. Main thread. Always true: the attribute is read
// once in a series of writes for each application, and is switched on again soon after the last write.
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
    /// Switches the attribute on again for every application of the series.
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
