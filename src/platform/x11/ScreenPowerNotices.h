// Notifies observers when the screens go off and on. Main thread, with the model's mutex held.
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
    /// `queryAgain` is called without the mutex when a timer requires a query. The constructor waits for the server.
    ScreenPowerNotices(const XConnection& connection, MainQueue& queue, std::function<void()> queryAgain) :
        queue_(queue), queryAgain_(std::move(queryAgain)), power_(connection) {}

    /// False if the server cannot switch screens off.
    bool isKnown() const { return power_.isKnown(); }
    /// True if the event is a reason to query the state.
    bool isHint(const xcb_generic_event_t& event) const { return power_.isHint(event); }
    /// If the screens are off already, observers are notified of that after the next query.
    Subscription observe(std::function<void(SystemActivityEvent)> observer);
    bool isObserved() const { return power_.isKnown() && observers_.hasAny(); }
    void query(PendingReplies& batch);

  private:
    void follow();

    MainQueue& queue_;
    std::function<void()> queryAgain_;
    ScreenPower power_;
    Observers<SystemActivityEvent> observers_;
    bool wereScreensOff_ = false; // as last reported to observers
    std::shared_ptr<ScheduledWork> nextQuery_;
    Lifetime lifetime_;
};

} // namespace kova::x11
