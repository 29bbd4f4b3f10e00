// The seam to the keyboard: presses anywhere on the desktop, in the Mac's terms on every platform, so that one stored
// configuration serves all of them.
#pragma once

#include "support/Published.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace kova {

/// Bits of `KeyPress::modifierFlags`, as the Mac numbers them.
namespace modifierFlag {
inline constexpr std::uint64_t capsLock = 0x10000;
inline constexpr std::uint64_t shift = 0x20000;
inline constexpr std::uint64_t control = 0x40000;
inline constexpr std::uint64_t option = 0x80000;   // Alt elsewhere
inline constexpr std::uint64_t command = 0x100000; // Super elsewhere
/// Those that a shortcut can ask for.
inline constexpr std::uint64_t ofShortcuts = shift | control | option | command;
} // namespace modifierFlag

/// A key that goes down.
struct KeyPress {
    std::uint16_t keyCode = 0;                 // the Mac's virtual key code: a place on the keyboard, not a letter
    std::uint64_t modifierFlags = 0;           // as the platform reports them; unknown bits may be among them
    bool isRepeat = false;                     // the key is held
    std::string charactersIgnoringModifiers{}; // UTF-8, by the active keyboard layout; may be empty
    bool operator==(const KeyPress&) const = default;
};

/// A key with the modifiers that must be held, and no others.
struct KeyCombination {
    std::uint16_t keyCode = 0;
    std::uint64_t modifierFlags = 0; // of `modifierFlag::ofShortcuts` only
    auto operator<=>(const KeyCombination&) const = default;
};

/// Main thread; never waits. A monitor is removed with its Subscription, and calls back on the main queue.
class KeyMonitorServicing {
  public:
    virtual ~KeyMonitorServicing() = default;

    /// Presses while another application is active; it cannot be kept from them. Where keys have to be claimed from the
    /// window system, only presses of the combinations that were claimed are reported.
    [[nodiscard]] virtual Subscription addGlobalMonitor(std::function<void(const KeyPress&)> monitor) = 0;
    /// Presses while a window of our own has the keyboard; true keeps the press from the window.
    [[nodiscard]] virtual Subscription addLocalMonitor(std::function<bool(const KeyPress&)> monitor) = 0;
    /// Which combinations the monitors wait for, in place of those named before; claimed from the window system, where
    /// it wants that, for as long as there is a global monitor and no recorder.
    virtual void claim(const std::vector<KeyCombination>& combinations) = 0;
    /// Those of the claimed ones that another program holds, or the system; they are not reported while it does, or not
    /// reported to KOVA alone.
    virtual std::vector<KeyCombination> heldByOthers() const = 0;
    /// Whether a combination that is not among `heldByOthers` is held by no other program.
    virtual bool knowsAllHolders() const { return true; }
    /// Tells, after each `claim`, that `heldByOthers` knows by now, and whenever that has changed since.
    [[nodiscard]] virtual Subscription observeHeldByOthers(std::function<void()> known) = 0;

    /// Every press goes to the recorder, and where the platform allows it to no other program; true ends the recording.
    /// Keys that only modify others are no presses. At most one records: a later one ends the former. `failed` is told
    /// in a sentence for a person why there is nothing to hear, for example because another program holds the keyboard.
    [[nodiscard]] virtual Subscription recordKeys(std::function<bool(const KeyPress&)> recorder,
                                                  std::function<void(const std::string& reason)> failed) = 0;
    /// What the active keyboard layout writes on a key, without modifiers; empty when it is no character.
    virtual std::string charactersOf(std::uint16_t keyCode) const = 0;
};

} // namespace kova
