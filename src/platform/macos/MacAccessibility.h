// Other applications' windows through the Mac's accessibility interface and its window server. Every request goes to
// the other application and waits for its answer, no longer than ApplicationBackoff::kDeadline; an application that
// hangs is left alone meanwhile. Requests may come from the main thread and from the polling queue at once.
#pragma once

#include "support/MainQueue.h"
#include "support/Mutex.h"
#include "support/Published.h"
#include "windowing/AccessibilityErrors.h"
#include "windowing/AccessibilityServicing.h"
#include "windowing/ApplicationBackoff.h"

#include <atomic>

namespace kova::macos {

class MacAccessibility final : public AccessibilityServicing {
  public:
    /// The queue, whose clock is read, outlives it.
    explicit MacAccessibility(const MainQueue& queue);

    bool isProcessTrusted() const override;
    bool requestTrust(bool prompt) override;
    std::optional<std::string> stalePermission() const override;
    bool readsAskApplications() const override { return true; }
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

    /// Makes a request of the process: its error number, or nothing when the process is left alone now. Waits for the
    /// deadline at most. Any thread.
    std::optional<int> ask(pid_t process, const std::function<int()>& request) const;
    /// Applications that hang and are left alone for now. Main thread.
    std::vector<pid_t> silentApplications() const;

  private:
    const MainQueue& queue_;
    std::shared_ptr<const void> systemWide_;
    std::atomic<std::uint64_t> spaceChanges_{0};
    Subscription spaceChangesSubscription_;
    mutable Mutex mutex_;
    mutable ApplicationBackoff backoff_ KOVA_GUARDED_BY(mutex_);
    mutable IgnoredPermission ignoredPermission_ KOVA_GUARDED_BY(mutex_);
};

} // namespace kova::macos
