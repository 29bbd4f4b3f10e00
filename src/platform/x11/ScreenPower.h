// Whether the server has switched the screens off to save power (DPMS). The server sends no events for that, and
// regular queries would wake an idle machine. But its screen saver begins when the screens go off and ends at the next
// input, with events; then the power state is queried. A timer queries again only while the power state can change
// without such an event. Guarded like the model.
#pragma once

#include "platform/x11/PendingReplies.h"
#include "support/MainQueue.h"

#include <functional>
#include <optional>

namespace kova::x11 {

/// The last reply of the server; at first, screens on.
struct ScreenPowerState {
    bool areScreensOff = false;
    bool isSaverActive = false;
    bool operator==(const ScreenPowerState&) const = default;
};

/// The time until the next query without an event; absent for none.
std::optional<Seconds> pauseBeforeLook(const ScreenPowerState& state);

class ScreenPower {
  public:
    /// Waits for the server's capabilities and selects events of its screen saver.
    explicit ScreenPower(const XConnection& connection);

    /// False if the server cannot switch screens off; then it is never queried.
    bool isKnown() const { return saverEvent_.has_value(); }
    /// Whether the event is a reason to query.
    bool isHint(const xcb_generic_event_t& event) const {
        return saverEvent_ && (event.response_type & 0x7F) == *saverEvent_;
    }
    /// Queries the state; calls back once it is known.
    void ask(PendingReplies& questions, std::function<void()> known);
    const ScreenPowerState& state() const { return state_; }

  private:
    const XConnection& connection_;
    std::optional<std::uint8_t> saverEvent_;
    ScreenPowerState state_;
};

} // namespace kova::x11
