// Other applications' windows through the Mac's accessibility interface and its window server. Every request goes to
// the other application and waits for the response up to ApplicationBackoff::kDeadline; an application that hangs gets
// no requests for a while. Thread-safe for the main thread and the polling queue.
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
    /// The queue, whose clock is used, outlives it.
    explicit MacAccessibility(const MainQueue& queue);

    bool isProcessTrusted() const override;
    bool requestTrust(bool prompt) override;
    std::optional<std::string> stalePermission() const override;
    bool readsSendRequests() const override { return true; }
    AccessibilityElement applicationElement(pid_t processIdentifier) const override;
    std::vector<AttributeValue> readAttributes(const AccessibilityElement& element,
                                               std::span<const AccessibilityAttribute> attributes) const override;
    /// An element also responds while "AXWindows" does not list it: on another Space, in full screen, behind another
    /// tab.
    WindowPresence presenceOf(const AccessibilityElement& window) const override;
    /// The number of changes to another Space, since Spaces have no public numbers.
    std::uint64_t shownSpace() const override { return spaceChanges_; }
    void writeAttributes(const AccessibilityElement& element, std::span<const AttributeWrite> writes) override;
    void performAction(const AccessibilityElement& element, AccessibilityAction action) override;
    std::optional<AccessibilityElement> elementAtPosition(CGPoint point) const override;
    std::vector<OnScreenWindow> onScreenWindows() const override;
    /// No-op: each request is sent immediately.
    void flush() override {}

    /// Sends a request to the process and returns its error number; absent when the process gets no requests now. Waits
    /// up to the deadline. Any thread.
    std::optional<int> ask(pid_t process, const std::function<int()>& request) const;
    /// The applications that do not respond and get no requests now. Main thread.
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
