// Whether the server has switched the screens off to save power (DPMS). The server sends no events for that, and
// regular queries would wake an idle machine. But it sends events when its screen saver begins, which happens when the
// screens go off, and when the screen saver ends, at the next input; at these events the power state is queried. A
// timer queries again only while the power state can change without such an event. Call with the model's mutex held.
#pragma once

#include "platform/x11/PendingReplies.h"
#include "support/MainQueue.h"

#include <functional>
#include <optional>

namespace kova::x11 {

/// The state by the server's last reply; before the first reply, the screens count as on.
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
    /// Whether the event is a reason to query.
    bool isHint(const xcb_generic_event_t& event) const {
        return saverEvent_ && (event.response_type & 0x7F) == *saverEvent_;
    }
    /// Adds the queries to the batch; calls `known` once the state is known.
    void query(PendingReplies& batch, std::function<void()> known);
    const ScreenPowerState& state() const { return state_; }

  private:
    const XConnection& connection_;
    std::optional<std::uint8_t> saverEvent_;
    ScreenPowerState state_;
};

} // namespace kova::x11
