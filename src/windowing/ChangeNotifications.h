// Lets several objects wait for changes of the desktop. The desktop itself notifies only one callback.
#pragma once

#include "support/Lifetime.h"
#include "support/Published.h"
#include "windowing/AccessibilityServicing.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace kova {

/// Main thread only. No other object may call `DesktopChangeServicing::notifyWhenChanged`.
class ChangeNotifications {
  public:
    explicit ChangeNotifications(DesktopChangeServicing& changes) : changes_(changes) {}
    ChangeNotifications(const ChangeNotifications&) = delete;
    ChangeNotifications& operator=(const ChangeNotifications&) = delete;

    /// Calls `callback` once, on the main queue, as soon as the desktop's change count differs from `count`; the two
    /// may differ already. Dropping the subscription cancels the call.
    [[nodiscard]] Subscription notifyWhenChanged(std::uint64_t count, std::function<void()> callback);
    /// The desktop's change count if an unchanged count proves that nothing has changed; else absent.
    std::optional<std::uint64_t> reliableCount() const;

  private:
    struct Waiting {
        std::uint64_t count;
        std::function<void()> callback;
        std::function<void()> dropped;

        Waiting(std::uint64_t awaitedCount, std::function<void()> notified, std::function<void()> whenDropped) :
            count(awaitedCount), callback(std::move(notified)), dropped(std::move(whenDropped)) {}
        Waiting(const Waiting&) = delete;
        Waiting& operator=(const Waiting&) = delete;
        ~Waiting() { dropped(); }
    };

    void awaitNext();
    void stopIfNoneWaits();
    void notifyDue();

    DesktopChangeServicing& changes_;
    std::vector<std::weak_ptr<Waiting>> waiting_; // an entry expires when its subscription is dropped
    Lifetime lifetime_;
};

} // namespace kova
