// The login session on Linux: says when the machine sleeps, another user has the seat or the screen is locked, by what
// logind and the screen savers tell. Without them it tells nothing, and all is well. It never waits, and wakes the
// agent only when one of them reports a change.
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

/// Where the buses are, as D-Bus writes addresses; empty for one that is not named.
struct BusAddresses {
    std::string system;
    std::string session;

    static BusAddresses fromEnvironment();
};

struct LoginSessionTimeouts {
    static constexpr int changesAtOnce = 16;
    /// An unconfirmed lock counts for this long: until a desktop has drawn its lock screen.
    Seconds withLock{10};
    /// What logind said last holds for this long after it has gone: it may only be restarting.
    Seconds withSilence{10};
    /// Changes are told one by one, but no more than `changesAtOnce` of them within `withFlood`; beyond that only what
    /// holds at the end of that time is told.
    Seconds withFlood{1};
};

/// Main thread only, where it does not say otherwise.
class LoginSession final : public SessionServicing, public SystemActivityServicing, public DiagnosticsServicing {
  public:
    /// Begins to connect; what it learns it tells once the loop runs.
    LoginSession(EventLoop& loop, const BusAddresses& addresses, SessionHints hints,
                 LoginSessionTimeouts timeouts = {});

    /// Any thread; what logind said last.
    bool isLoginSessionScreenLocked() const override { return isLockedHintSet_; }
    Subscription observeSystemActivity(std::function<void(SystemActivityEvent)> observer) override;
    std::vector<DiagnosticLine> diagnose() const override;

  private:
    LogindClient::Listener listener();
    void hear(ActivityFacts facts);
    void tell();

    EventLoop& loop_;
    LoginSessionTimeouts timeouts_;
    ActivityFacts facts_;
    ActivityFacts told_; // as the observers know them
    int toldInARow_ = 0; // changes since `floodTimer_` began
    std::shared_ptr<ScheduledWork> floodTimer_;
    std::atomic<bool> isLockedHintSet_ = false;
    Observers<SystemActivityEvent> observers_;
    std::shared_ptr<ScheduledWork> lockTimeout_;
    std::shared_ptr<ScheduledWork> silenceTimeout_;
    Lifetime lifetime_;
    LogindClient logind_;
    ScreenSavers screenSavers_;
};

} // namespace kova
