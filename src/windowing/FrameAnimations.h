// Writes frames without animation. A Mac application animates its windows while its enhanced user interface is on (for
// VoiceOver), and then reports intermediate frames. So the attribute is switched off during a series of writes. Main
// thread. Always true: the attribute is read once per application and series, and is switched on again after the
// series.
#pragma once

#include "support/Lifetime.h"
#include "support/MainQueue.h"
#include "windowing/AccessibilityServicing.h"

#include <map>
#include <span>

namespace kova {

class FrameAnimations {
  public:
    /// A series ends when nothing was written for this long. It is longer than the verification of a placement.
    static constexpr Seconds kPause{1};

    /// Both parameters must outlive this object.
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
    std::map<pid_t, bool> wasOn_; // by application of the series: whether the attribute was on
    Seconds lastWrite_{0};        // uptime
    Lifetime lifetime_;
};

} // namespace kova
