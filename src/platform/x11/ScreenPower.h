// Finds out whether the server has switched the screens off to save power (DPMS). The server sends no events for that,
// and regular queries would wake an idle machine. But the server does send events of its screen saver: it begins when
// the screens go off, and ends at the next input. KOVA queries the power state at these events. A timer repeats the
// query only while the power state can change without such an event. Call with the model's mutex held.
#pragma once

#include "platform/x11/PendingReplies.h"
#include "support/MainQueue.h"

#include <functional>
#include <optional>

namespace kova::x11 {

/// The state according to the server's last reply. Before the first reply, the screens count as on.
struct ScreenPowerState {
    bool areScreensOff = false;
    bool isSaverActive = false;
    bool operator==(const ScreenPowerState&) const = default;
};

/// How long to wait before the state is queried without an event; absent if only an event requires a query.
std::optional<Seconds> pauseBeforeNextQuery(const ScreenPowerState& state);

class ScreenPower {
  public:
    /// Selects events of the server's screen saver. The constructor waits for the server, to learn its capabilities.
    explicit ScreenPower(const XConnection& connection);

    /// False if the server cannot switch screens off; then the state is never queried.
    bool isKnown() const { return saverEvent_.has_value(); }
    /// True if the event is a reason to query the state.
    bool isHint(const xcb_generic_event_t& event) const {
        return saverEvent_ && (event.response_type & 0x7F) == *saverEvent_;
    }
    /// Adds the queries to the batch. `known` is called once the replies have been used.
    void query(PendingReplies& batch, std::function<void()> known);
    const ScreenPowerState& state() const { return state_; }

  private:
    const XConnection& connection_;
    std::optional<std::uint8_t> saverEvent_;
    ScreenPowerState state_;
};

} // namespace kova::x11
