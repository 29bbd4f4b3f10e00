// Which keys are down, as far as the server has told, and whether a press is a new one or a key that repeats. Between
// repetitions the server tells no releases. The release of a key may go to another program: the claim of a key ends
// with its own release, so that of one that went down meanwhile, and is let go later, is never told.
#pragma once

#include <xcb/xproto.h>

#include <array>
#include <cstdint>
#include <map>
#include <optional>

namespace kova::x11 {

class HeldKeys {
  public:
    using Bits = std::array<std::uint8_t, 32>; // as the server tells them, by key and from the lowest bit

    /// Times are the server's, in milliseconds; its clock turns over. True when the key repeats.
    bool press(xcb_keycode_t key, xcb_timestamp_t time);
    /// All keys that are down, a bit for each, from the moment on in which their releases are told. None of them is
    /// new.
    void areDown(const Bits& keys);
    /// True when this was the key with which the claim began and others are still down, whose releases are not told
    /// now.
    bool release(xcb_keycode_t key);
    /// From here on no event tells of the releases of those that are down, unless they are pressed again.
    void loseSight();
    /// How long a key is held before it repeats.
    void setRepeatDelay(std::uint16_t milliseconds) { repeatDelay_ = milliseconds; }

  private:
    struct Held {
        std::optional<xcb_timestamp_t> pressed; // absent until it repeats, for one that was down before
        bool repeats = false;
        bool isInSight = true; // its release will be told
    };
    bool isRepetition(const Held& held, xcb_timestamp_t time) const;

    std::map<xcb_keycode_t, Held> held_;
    std::optional<xcb_keycode_t> first_; // since none was down
    std::int32_t repeatDelay_ = 660;     // the server's own, unless it is changed
};

} // namespace kova::x11
