// Knows which keys are pressed, and decides whether a press event is a repetition. The server reports no releases
// between repetitions. A grab ends with the release of the key that activated it; the releases of keys that were
// pressed during the grab then go to another program and are not reported to KOVA.
#pragma once

#include <xcb/xproto.h>

#include <array>
#include <cstdint>
#include <map>
#include <optional>

namespace kova::x11 {

class PressedKeys {
  public:
    using Bits = std::array<std::uint8_t, 32>; // as the server reports them: one bit per key code, lowest bit first

    /// True if the press is a repetition. `time`: the server's time in milliseconds, which wraps around.
    bool press(xcb_keycode_t key, xcb_timestamp_t time);
    /// Sets the keys that are already pressed; their next press events are repetitions. Call it when the whole keyboard
    /// was grabbed: during such a grab the server reports all releases.
    void setPressed(const Bits& keys);
    /// True if this key activated the grab and other keys are still pressed: the grab ends with this key, so the
    /// releases of the other keys will not be reported.
    bool release(xcb_keycode_t key);
    /// From now on the release of each pressed key is not reported, until that key is pressed again.
    void stopExpectingReleases();
    /// How long a key must be pressed before it repeats.
    void setRepeatDelay(std::uint16_t milliseconds) { repeatDelay_ = milliseconds; }

  private:
    struct Held {
        std::optional<xcb_timestamp_t>
            pressed; // last press event; absent for a key from `setPressed`, until it repeats
        bool repeats = false;
        bool isReleaseReported = true;
    };
    bool isRepetition(const Held& held, xcb_timestamp_t time) const;

    std::map<xcb_keycode_t, Held> held_;
    std::optional<xcb_keycode_t> first_; // the key that was pressed while no other key was pressed
    std::int32_t repeatDelay_ = 660;     // milliseconds; the server's default
};

} // namespace kova::x11
