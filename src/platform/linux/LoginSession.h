// The login session on Linux: reports sleep, session switches and locks, from logind and the screen savers. Without
// them there are no events. It never waits, and the agent wakes up only for changes.
#pragma once

#include "platform/linux/ActivityConditions.h"
#include "platform/linux/LogindClient.h"
#include "platform/linux/ScreenSavers.h"
#include "support/Lifetime.h"
#include "windowing/DiagnosticsServicing.h"
#include "windowing/ScreenServicing.h"
#include "windowing/SystemActivityServicing.h"

#include <atomic>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace kova {

/// D-Bus addresses of the buses; empty if unknown.
struct BusAddresses {
    std::string system;
    std::string session;

    static BusAddresses fromEnvironment();
};

struct LoginSessionTimeouts {
    static constexpr int changesAtOnce = 16;
    /// An unconfirmed lock counts for this long: until a desktop has drawn its lock screen.
    Seconds unconfirmedLock{10};
    /// logind's last state holds for this long after it has disconnected, since it may be restarting.
    Seconds disconnectedLogind{10};
    /// At most `changesAtOnce` changes are reported individually within this time; of further changes only the state at
    /// its end is reported.
    Seconds floodPeriod{1};
};

/// Main thread only, unless a function says otherwise.
class LoginSession final : public SessionServicing, public SystemActivityServicing, public DiagnosticsServicing {
  public:
    /// Begins to connect; events are reported once the loop runs.
    LoginSession(EventLoop& loop, const BusAddresses& addresses, SessionHints hints,
                 LoginSessionTimeouts timeouts = {});

    /// Whether the session was locked by the last report of logind; screen savers do not count. Any thread.
    bool isLoginSessionScreenLocked() const override { return isLockedHintSet_; }
    Subscription observeSystemActivity(std::function<void(SystemActivityEvent)> observer) override;
    std::vector<DiagnosticLine> diagnose() const override;

  private:
    LogindClient::Listener listener();
    void update(ActivityFacts facts);
    void report();

    EventLoop& loop_;
    LoginSessionTimeouts timeouts_;
    ActivityFacts facts_;
    ActivityFacts reported_; // the facts at the last report to observers
    int reportedInARow_ = 0; // changes since `floodTimer_` began
    std::shared_ptr<ScheduledWork> floodTimer_;
    std::atomic<bool> isLockedHintSet_ = false;
    Observers<SystemActivityEvent> observers_;
    std::shared_ptr<ScheduledWork> lockTimeout_;
    std::shared_ptr<ScheduledWork> disconnectTimeout_;
    Lifetime lifetime_;
    LogindClient logind_;
    ScreenSavers screenSavers_;
};

} // namespace kova
