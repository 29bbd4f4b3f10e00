#include "windowing/FrameAnimations.h"

#include <utility>

namespace kova {

void FrameAnimations::switchEnhancedInterface(pid_t process, bool on) {
    const AttributeWrite write{AccessibilityAttribute::enhancedUserInterface, on};
    accessibility_.writeAttributes(accessibility_.applicationElement(process), {&write, 1});
}

void FrameAnimations::write(const AccessibilityElement& window, std::span<const AttributeWrite> frame) {
    if (accessibility_.readsSendRequests()) {
        const pid_t process = window.processIdentifier;
        if (wasOn_.empty()) endLater();
        lastWrite_ = queue_.uptime();
        if (!wasOn_.contains(process)) {
            constexpr std::array attributes = {AccessibilityAttribute::enhancedUserInterface};
            const auto values = accessibility_.readAttributes(accessibility_.applicationElement(process), attributes);
            const bool isOn = !values.empty() && values.front() == AttributeValue(true);
            wasOn_[process] = isOn;
            if (isOn) switchEnhancedInterface(process, false);
        }
    }
    accessibility_.writeAttributes(window, frame);
}

void FrameAnimations::endLater() {
    const Seconds due = wasOn_.empty() ? kPause : lastWrite_ + kPause - queue_.uptime();
    queue_.after(due, lifetime_.guard([this] {
        if (queue_.uptime() < lastWrite_ + kPause) return endLater();
        endSeries();
        accessibility_.flush();
    }));
}

void FrameAnimations::endSeries() {
    for (const auto& [process, wasOn] : std::exchange(wasOn_, {})) {
        if (wasOn) switchEnhancedInterface(process, true);
    }
}

} // namespace kova
