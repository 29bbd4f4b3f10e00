// Which keys are down according to the server, and whether a press is a repetition. The server reports no releases
// between repetitions. A grab ends with the release of its own key; the release of a key pressed during the grab then
// goes to another program and is not reported here.
#pragma once

#include <xcb/xproto.h>

#include <array>
#include <cstdint>
#include <map>
#include <optional>

namespace kova::x11 {

class HeldKeys {
  public:
    using Bits = std::array<std::uint8_t, 32>; // as the server reports them, by key and from the lowest bit

    /// Times are the server's, in milliseconds; its clock turns over. True when the key repeats.
    bool press(xcb_keycode_t key, xcb_timestamp_t time);
    /// Sets the keys that are down, a bit for each, when their releases begin to be reported. Presses of them are
    /// repetitions.
    void areDown(const Bits& keys);
    /// True if this key activated the grab and others are still down: the grab ends with it, so their releases will not
    /// be reported.
    bool release(xcb_keycode_t key);
    /// From now on the releases of the keys that are down are not reported, unless they are pressed again.
    void loseSight();
    /// How long a key is held before it repeats.
    void setRepeatDelay(std::uint16_t milliseconds) { repeatDelay_ = milliseconds; }

  private:
    struct Held {
        std::optional<xcb_timestamp_t> pressed; // absent for a key that was down before, until it repeats
        bool repeats = false;
        bool isInSight = true; // its release will be reported
    };
    bool isRepetition(const Held& held, xcb_timestamp_t time) const;

    std::map<xcb_keycode_t, Held> held_;
    std::optional<xcb_keycode_t> first_; // the key pressed first since none was down
    std::int32_t repeatDelay_ = 660;     // milliseconds; the server's default
};

} // namespace kova::x11
