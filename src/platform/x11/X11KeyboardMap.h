// The keyboard as the server describes it: the Mac's number of each key, the characters of the layouts on it, and the
// bits of an event's state for each modifier. A value made from the server's replies.
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

/// The Mac's number of the key with that XKB name ("AC01"); absent for keys that a Mac does not have.
std::optional<std::uint16_t> macKeyCodeNamed(std::string_view xkbName);

/// One key as the server describes it.
struct KeyboardKey {
    std::string name;                                // of XKB
    std::vector<std::vector<std::uint32_t>> symbols; // by group, then level
    std::uint8_t outOfRangeGroups = 0;               // XKB's rule for groups that the key does not have
    std::uint8_t modifiers = 0;                      // bits that it sets while it is held
};

class KeyboardMap {
  public:
    static constexpr std::size_t kKeyCount = 256;

    KeyboardMap() = default;
    /// The keys by the server's key code.
    explicit KeyboardMap(const std::array<KeyboardKey, kKeyCount>& keys);

    /// Absent for keys that a Mac does not have, and for modifier keys.
    std::optional<std::uint16_t> macKeyCode(xcb_keycode_t key) const;
    /// Usually one; none when the keyboard has no such key.
    std::vector<xcb_keycode_t> keysOf(std::uint16_t macKeyCode) const;
    /// The character of the key in the group's layout without modifiers, in UTF-8; empty if there is none. Of a dead
    /// key the accent.
    std::string characters(std::uint16_t macKeyCode, std::uint8_t group) const;

    /// Flags of `modifierFlag` for the state of an event.
    std::uint64_t flagsOf(std::uint16_t state) const;
    /// The state in which exactly these modifiers of shortcuts are held; absent when the keyboard lacks one of them.
    std::optional<std::uint16_t> stateOf(std::uint64_t modifierFlags) const;
    /// Every combination of the locks that a shortcut does not care about, none of them included.
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
