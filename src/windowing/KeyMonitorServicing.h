// Platform interface to the keyboard: key presses on the whole desktop, with the Mac's key codes and modifiers on every
// platform, so that one stored configuration serves all of them.
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
/// The modifiers that a shortcut can have.
inline constexpr std::uint64_t ofShortcuts = shift | control | option | command;
} // namespace modifierFlag

/// A key that goes down.
struct KeyPress {
    std::uint16_t keyCode = 0;                 // the Mac's virtual key code: a position on the keyboard
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

/// How modifiers are written in texts for the user.
enum class ModifierNames {
    words,   // Ctrl+Alt+H
    symbols, // ⌃⌥H, as on a Mac
};

/// A holder of a key combination is a program that has registered the combination, or the system itself. This type says
/// which holders the platform can detect.
enum class KnownHolders {
    everyProgram, // a combination for which no holder is known is free
    systemOnly,   // the system's own shortcuts are known; those of other programs are not
};

/// Main thread; never waits. A monitor is removed with its Subscription, and calls back on the main queue.
class KeyMonitorServicing {
  public:
    virtual ~KeyMonitorServicing() = default;

    /// Reports presses while another application is active. That application gets the presses, too. On a window system
    /// where combinations must be grabbed, only presses of grabbed combinations are reported, and no other application
    /// gets these presses.
    [[nodiscard]] virtual Subscription addGlobalMonitor(std::function<void(const KeyPress&)> monitor) = 0;
    /// Reports presses while a window of KOVA has the focus. If `monitor` returns true, the window does not get the
    /// press.
    [[nodiscard]] virtual Subscription addLocalMonitor(std::function<bool(const KeyPress&)> monitor) = 0;
    /// Sets the combinations that KOVA uses, in place of the former ones. On window systems with grabs the combinations
    /// are grabbed while there is a global monitor and no recorder.
    virtual void claim(const std::vector<KeyCombination>& combinations) = 0;
    /// The combinations of `claim` that one of `knownHolders` holds. Their presses are not reported to KOVA, or the
    /// holder acts on them as well.
    virtual std::vector<KeyCombination> heldByOthers() const = 0;
    virtual KnownHolders knownHolders() const { return KnownHolders::everyProgram; }
    virtual ModifierNames modifierNames() const { return ModifierNames::words; }
    /// Calls `changed` after each `claim` as soon as `heldByOthers` is known, and whenever it changes later.
    [[nodiscard]] virtual Subscription observeHeldByOthers(std::function<void()> changed) = 0;

    /// Reports every press to the recorder and, if the platform allows that, to no other program, until the recorder
    /// returns true. Modifier keys alone are not reported. A new recorder ends the former one. `failed` is called with
    /// a sentence for the user if recording is impossible, for example because another program holds the keyboard.
    [[nodiscard]] virtual Subscription recordKeys(std::function<bool(const KeyPress&)> recorder,
                                                  std::function<void(const std::string& reason)> failed) = 0;
    /// The key's character in the active keyboard layout, without modifiers; empty if there is none.
    virtual std::string charactersOf(std::uint16_t keyCode) const = 0;
};

} // namespace kova
