// Whether the server has switched the screens off to save power (DPMS). It announces nothing of the kind, so it has to
// be asked, and an idle desktop asks nothing: the server's screen saver begins when the screens go dark and ends when
// the user returns, and that it does announce. Only where the one can change without the other is there a time at which
// to look again. Guarded like the model.
#pragma once

#include "platform/x11/PendingReplies.h"
#include "support/MainQueue.h"

#include <functional>
#include <optional>

namespace kova::x11 {

/// What the server answered last; at first, that all is well.
struct ScreenPowerState {
    bool areScreensOff = false;
    bool isSaverActive = false;
    bool operator==(const ScreenPowerState&) const = default;
};

/// When to look again although nothing has been announced; absent for not at all.
std::optional<Seconds> pauseBeforeLook(const ScreenPowerState& state);

class ScreenPower {
  public:
    /// Waits for the server's answer whether it can switch screens off; from then on the connection is told of its
    /// screen saver.
    explicit ScreenPower(const XConnection& connection);

    /// False on a server that cannot; it is never asked then.
    bool isKnown() const { return saverEvent_.has_value(); }
    /// Whether the event says that it is time to ask.
    bool isHint(const xcb_generic_event_t& event) const {
        return saverEvent_ && (event.response_type & 0x7F) == *saverEvent_;
    }
    /// Calls back once the state is that of the server.
    void ask(PendingReplies& questions, std::function<void()> known);
    const ScreenPowerState& state() const { return state_; }

  private:
    const XConnection& connection_;
    std::optional<std::uint8_t> saverEvent_;
    ScreenPowerState state_;
};

} // namespace kova::x11
