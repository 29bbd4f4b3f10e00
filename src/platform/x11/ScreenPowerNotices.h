// Tells observers when the screens go dark and when they are lit again. Main thread, guarded like the model.
#pragma once

#include "platform/x11/ScreenPower.h"
#include "support/Lifetime.h"
#include "support/Published.h"
#include "windowing/SystemActivityServicing.h"

#include <functional>
#include <memory>
#include <utility>

namespace kova::x11 {

class ScreenPowerNotices {
  public:
    /// `askAgain` is called without the lock, when the state has to be asked for although nothing was announced. Waits
    /// for the server.
    ScreenPowerNotices(const XConnection& connection, MainQueue& queue, std::function<void()> askAgain) :
        queue_(queue), askAgain_(std::move(askAgain)), power_(connection) {}

    /// False on a server that cannot switch screens off.
    bool isKnown() const { return power_.isKnown(); }
    /// Whether the event says that it is time to ask.
    bool isHint(const xcb_generic_event_t& event) const { return power_.isHint(event); }
    /// An observer that comes while it is dark is told so, too, once that has been asked again.
    Subscription observe(std::function<void(SystemActivityEvent)> observer);
    bool isObserved() const { return power_.isKnown() && observers_.hasAny(); }
    void ask(PendingReplies& questions);

  private:
    void follow();

    MainQueue& queue_;
    std::function<void()> askAgain_;
    ScreenPower power_;
    Observers<SystemActivityEvent> observers_;
    bool wereScreensOff_ = false; // as the observers know it
    std::shared_ptr<ScheduledWork> look_;
    Lifetime lifetime_;
};

} // namespace kova::x11
