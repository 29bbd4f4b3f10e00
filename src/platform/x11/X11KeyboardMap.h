// The keyboard as the server describes it: for each key the number that it has on a Mac and its characters in each
// layout; for each modifier its bits in an event's state. A value made from the server's replies.
#pragma once

#include "windowing/KeyMonitorServicing.h"

#include <xcb/xcb.h>

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

struct xcb_xkb_get_map_reply_t;
struct xcb_xkb_get_names_reply_t;

namespace kova::x11 {

/// The number that the key with this XKB name ("AC01") has on a Mac; absent for keys that a Mac does not have.
std::optional<std::uint16_t> macKeyCodeNamed(std::string_view xkbName);

/// One key as the server describes it.
struct KeyboardKey {
    std::string name;                                // XKB's name for the key
    std::vector<std::vector<std::uint32_t>> symbols; // by group, then level
    std::uint8_t outOfRangeGroups = 0;               // XKB's rule for groups that the key does not have
    std::uint8_t modifiers = 0;                      // bits of the event state that are set while the key is pressed
};

class KeyboardMap {
  public:
    static constexpr std::size_t kKeyCount = 256;

    KeyboardMap() = default;
    /// The keys by the server's key code.
    explicit KeyboardMap(const std::array<KeyboardKey, kKeyCount>& keys);

    /// Absent for keys that a Mac does not have, and for modifier keys.
    std::optional<std::uint16_t> macKeyCode(xcb_keycode_t key) const;
    /// The server's codes of the key: usually one, none if the keyboard has no such key.
    std::vector<xcb_keycode_t> keysOf(std::uint16_t macKeyCode) const;
    /// The character of the key in the group's layout without modifiers, in UTF-8; empty if there is none. For a dead
    /// key its accent.
    std::string characters(std::uint16_t macKeyCode, std::uint8_t group) const;

    /// Converts the state of an event to flags of `modifierFlag`.
    std::uint64_t flagsOf(std::uint16_t state) const;
    /// The state of an event in which exactly these modifiers are pressed; absent if the keyboard lacks one of them.
    std::optional<std::uint16_t> stateOf(std::uint64_t modifierFlags) const;
    /// All combinations of the lock modifiers, which shortcuts ignore; includes 0.
    const std::vector<std::uint16_t>& lockStates() const { return lockStates_; }

    bool operator==(const KeyboardMap&) const = default;

  private:
    struct Key {
        xcb_keycode_t key = 0;
        std::uint16_t macKeyCode = 0;
        std::uint8_t outOfRangeGroups = 0;
        std::vector<std::string> characters; // by group
        bool operator==(const Key&) const = default;
    };

    std::vector<Key> keys_;
    std::uint8_t option_ = 0;
    std::uint8_t command_ = 0;
    std::vector<std::uint16_t> lockStates_{0};
};

/// From the server's replies with names, symbols and modifiers.
KeyboardMap keyboardMapOf(const xcb_xkb_get_names_reply_t& names, const xcb_xkb_get_map_reply_t& map);

} // namespace kova::x11
