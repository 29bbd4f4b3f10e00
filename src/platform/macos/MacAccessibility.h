// Other applications' windows through the Mac's accessibility interface and its window server. Every question goes to
// the other application and waits for its answer, no longer than ApplicationPatience::kDeadline; one that hangs is left
// alone meanwhile. Reads and writes may come from the main thread and from the polling queue at once.
#pragma once

#include "support/MainQueue.h"
#include "support/Published.h"
#include "windowing/AccessibilityServicing.h"
#include "windowing/ApplicationPatience.h"

#include <atomic>
#include <mutex>

namespace kova::macos {

class MacAccessibility final : public AccessibilityServicing, public DesktopChangeServicing {
  public:
    /// The queue, whose clock is read, outlives it.
    explicit MacAccessibility(const MainQueue& queue);

    bool isProcessTrusted() const override;
    bool requestTrust(bool prompt) override;
    AccessibilityElement applicationElement(pid_t processIdentifier) const override;
    std::vector<AttributeValue> readAttributes(const AccessibilityElement& element,
                                               std::span<const AccessibilityAttribute> attributes) const override;
    /// An element that is held goes on answering for its window also where "AXWindows" does not hold it: on another
    /// Space, in full screen, behind another tab.
    WindowPresence presenceOf(const AccessibilityElement& window) const override;
    /// How often another Space was shown: Spaces have no public numbers.
    std::uint64_t shownSpace() const override { return spaceChanges_; }
    void writeAttributes(const AccessibilityElement& element, std::span<const AttributeWrite> writes) override;
    void performAction(const AccessibilityElement& element, AccessibilityAction action) override;
    std::optional<AccessibilityElement> elementAtPosition(CGPoint point) const override;
    std::vector<OnScreenWindow> onScreenWindows() const override;
    /// Nothing is held back.
    void flush() override {}

    /// The Mac does not announce every change, so that somebody has to ask.
    std::optional<std::uint64_t> changeCount() const override { return std::nullopt; }
    void notifyWhenChanged(std::uint64_t, std::function<void()>) override {}

    /// Applications that hang and are left alone for now. Main thread.
    std::vector<pid_t> silentApplications() const;

  private:
    /// The call's number of an error, or nothing when the application is not to be asked now.
    template <class Call>
    std::optional<int> ask(pid_t process, Call call) const;
    /// True when it was on and is to be switched on again, also when it is not known whether it went off.
    bool switchOffEnhancedInterface(pid_t process, const void* application) const;

    const MainQueue& queue_;
    std::shared_ptr<const void> systemWide_;
    std::atomic<std::uint64_t> spaceChanges_{0};
    Subscription spaceChangesSubscription_;
    mutable std::mutex mutex_; // of the patience
    mutable ApplicationPatience patience_;
};

} // namespace kova::macos
