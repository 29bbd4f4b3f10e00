// Schedules polls: twice a second while running, one at a time. If the desktop announces its changes, no poll runs
// until a change is announced. If announcements can get lost, a poll runs at the latest after the longest idle time. A
// generation counter, not a lock, keeps late results from being applied. Main thread only, except for the poll itself.
#pragma once

#include "support/Lifetime.h"
#include "support/MainQueue.h"
#include "windowing/AccessibilityWindowService.h"
#include "windowing/ChangeAnnouncements.h"
#include "windowing/ChangeNotifications.h"

#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace kova {

struct PollResult {
    AccessibilityPermissionState permissionState = AccessibilityPermissionState::denied;
    WindowEnumeration windows;
    bool isSessionLocked = false;
    std::optional<std::uint64_t> changeCount; // as counted before the desktop was read
    Seconds begun{0};                         // uptime at which the poll was requested
};

class RefreshCycle {
  public:
    static constexpr Seconds kInterval{0.5};
    /// The longest time that work waits for a poll. A poll may take longer if applications respond slowly.
    static constexpr Seconds kLongestWait{0.3};

    struct Callbacks {
        std::function<void(PollResult)> apply; // receives current results; called only while running and not suspended
        std::function<bool()> isWaiting;       // true: keep polling, since an object has a timeout or awaits something
        std::function<std::vector<KnownWindow>()>
            knownWindows; // windows whose presence is queried if a poll does not list them
    };

    RefreshCycle(std::shared_ptr<AccessibilityWindowService> service, SessionServicing& session,
                 DesktopChangeServicing& changes, ChangeNotifications& notifications, MainQueue& queue,
                 WorkQueue& pollingQueue, Callbacks callbacks);
    ~RefreshCycle();
    RefreshCycle(const RefreshCycle&) = delete;
    RefreshCycle& operator=(const RefreshCycle&) = delete;

    /// Begins running and drops the results of older polls. The timer starts with `startTimer`.
    void begin();
    void startTimer();
    /// Stops the timer and drops the results of polls.
    void end();
    /// Refuses polls until `resume`. The result of a poll in flight is dropped.
    void suspend();
    void resume();
    /// Polls now. No-op while a poll is in flight, while suspended, or when not running.
    void refresh();
    /// Ends idle polls. Call when an object has begun to wait for a time or for a poll.
    void wake();
    /// Runs the work after a poll that begins now or later, but after `kLongestWait` at the latest, in the order of the
    /// calls. Returns false and drops the work if there is no reason to wait: no other work waits, and either the last
    /// result is current or no poll will come.
    [[nodiscard]] bool awaitCurrent(std::function<void()> work);

    bool isRunning() const { return isRunning_; }
    bool isSuspended() const { return isSuspended_; }
    /// Whether a result was ever applied.
    bool hasResult() const { return hasResult_; }
    /// True while the timer is off, since the change count says that nothing changed.
    bool isIdle() const { return isIdle_; }

  private:
    struct Waiting {
        std::int64_t poll; // the number of the first poll that is recent enough
        std::function<void()> work;
    };

    void runWaiting(std::int64_t newestPoll);
    void runAllWaiting();
    void invalidateOlderPolls();
    void stopTimer();
    void scheduleTick();
    void resumeTicking();
    void pollAfterIdleTime();
    void tick();
    bool mayBeIdle() const;
    void becomeIdle();
    void receive(PollResult result, std::int64_t generation, std::int64_t poll);

    std::shared_ptr<AccessibilityWindowService> service_;
    SessionServicing& session_;
    DesktopChangeServicing& changes_;
    ChangeNotifications& notifications_;
    MainQueue& queue_;
    WorkQueue& pollingQueue_;
    Callbacks callbacks_;
    bool isRunning_ = false;
    bool isSuspended_ = false;
    bool isPollInFlight_ = false;
    bool isIdle_ = false;
    Subscription nextChange_; // while idle
    bool hasResult_ = false;
    std::int64_t generation_ = 0;
    std::int64_t polls_ = 0; // the number of polls begun so far
    Seconds nextTick_{0};    // uptime
    std::shared_ptr<ScheduledWork> timer_;
    std::deque<Waiting> waiting_;
    std::shared_ptr<ScheduledWork> waitingDeadline_; // set while any work waits
    std::optional<std::uint64_t> appliedChangeCount_;
    /// Used on the polling queue. Null if `announcesWithoutRequest()`.
    std::shared_ptr<ChangeAnnouncements> announcements_;
    Lifetime lifetime_;
};

} // namespace kova
