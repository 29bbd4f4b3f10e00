// Access to other applications' windows, through the Mac's accessibility interface and its window server. Every request
// to an element goes to the application of the element and waits for its response, at most
// ApplicationBackoff::kDeadline. An application that hangs gets no requests for a while. The main thread and the
// polling queue may call at the same time.
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
    /// Uses the clock of the queue. The queue outlives this.
    explicit MacAccessibility(const MainQueue& queue);

    bool isProcessTrusted() const override;
    bool requestTrust(bool prompt) override;
    std::optional<std::string> stalePermission() const override;
    bool readsSendRequests() const override { return true; }
    AccessibilityElement applicationElement(pid_t processIdentifier) const override;
    std::vector<AttributeValue> readAttributes(const AccessibilityElement& element,
                                               std::span<const AccessibilityAttribute> attributes) const override;
    /// Sends a request to the window's element. The element responds even while "AXWindows" does not list the window,
    /// because it is on another Space, in full screen or behind another tab.
    WindowPresence presenceOf(const AccessibilityElement& window) const override;
    /// Returns how often another Space was shown, since macOS does not number its Spaces publicly.
    std::uint64_t shownSpace() const override { return spaceChanges_; }
    void writeAttributes(const AccessibilityElement& element, std::span<const AttributeWrite> writes) override;
    void performAction(const AccessibilityElement& element, AccessibilityAction action) override;
    std::optional<AccessibilityElement> elementAtPosition(CGPoint point) const override;
    std::vector<OnScreenWindow> onScreenWindows() const override;
    /// No-op: each request is sent immediately.
    void flush() override {}

    /// Calls `request`, which sends a request to the process and returns an error number. Returns that number; absent
    /// if the process gets no requests now. Waits at most ApplicationBackoff::kDeadline. Any thread.
    std::optional<int> send(pid_t process, const std::function<int()>& request) const;
    /// Returns the applications that did not respond to the last request. Main thread.
    std::vector<pid_t> unresponsiveApplications() const;

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
