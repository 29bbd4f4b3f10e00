// Counts changes of the desktop on a Mac. It counts the notifications that applications and windows were requested to
// send, and notifications of the system. Created and destroyed on the main thread.
#pragma once

#include "platform/macos/MacAccessibility.h"
#include "support/Lifetime.h"
#include "support/Mutex.h"

#include <atomic>
#include <map>
#include <memory>
#include <vector>

namespace kova::macos {

class MacChangeObservers final : public DesktopChangeServicing {
  public:
    /// Both outlive this.
    MacChangeObservers(MainQueue& queue, const MacAccessibility& accessibility);
    /// Call when no request for announcements is pending.
    ~MacChangeObservers() override;
    MacChangeObservers(const MacChangeObservers&) = delete;
    MacChangeObservers& operator=(const MacChangeObservers&) = delete;

    std::optional<std::uint64_t> changeCount() const override { return changes_; }
    void notifyWhenChanged(std::uint64_t count, std::function<void()> callback) override;
    bool announcesWithoutRequest() const override { return false; }
    AnnouncementResponse requestAnnouncements(const AccessibilityElement& element) override;
    void endAnnouncements(const AccessibilityElement& element) override;
    std::optional<Seconds> longestIdleTime() const override { return Seconds(10); }

    /// Increases the change count. Main thread.
    void noteChange();

  private:
    struct Observer;
    std::shared_ptr<Observer> observerOf(pid_t process);
    void notifySoon();

    MainQueue& queue_;
    const MacAccessibility& accessibility_;
    std::atomic<std::uint64_t> changes_{1};
    std::function<void()> callback_;
    std::uint64_t request_ = 0; // number of the newest call of notifyWhenChanged
    std::vector<Subscription> systemChanges_;
    Mutex mutex_;
    std::map<pid_t, std::shared_ptr<Observer>> observers_ KOVA_GUARDED_BY(mutex_);
    Lifetime lifetime_;
};

} // namespace kova::macos
