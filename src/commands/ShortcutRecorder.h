// What a field that records a shortcut does with each key press, wherever that field is shown: Delete clears, Escape
// leaves everything as it was, anything else needs a modifier and must not belong to another action. Main thread only.
#pragma once

#include "commands/KovaShortcutSettings.h"

#include <string>
#include <string_view>

namespace kova {

inline constexpr std::string_view kRecorderPrompt = "Type Shortcut…"; // shown while it records
inline constexpr std::string_view kRecorderHelp = "Click to record a keyboard shortcut";
inline constexpr std::string_view kNoShortcutDescription = "Keyboard shortcut not set"; // for accessibility clients

/// Stands for a key on which nothing is written. Stored configurations hold exactly these characters.
inline constexpr std::string_view kUnknownKeyLabel = "Key (event.keyCode)";

/// Said when another action has the combination.
std::string conflictMessage(KovaShortcutAction holder);

/// Whether these modifiers are enough; Shift alone is not.
bool canBeShortcut(std::uint64_t modifierFlags);

/// The text for the key of a press.
std::string keyLabel(const KeyPress& press);

class ShortcutRecorder {
  public:
    /// The settings outlive the recorder.
    ShortcutRecorder(KovaShortcutSettings& settings, KovaShortcutAction action) :
        settings_(settings), action_(action) {}

    enum class Outcome { recorded, cleared, cancelled, refused };
    struct Step {
        Outcome outcome = Outcome::refused;
        std::string message; // why it was refused; empty when a beep says it all
        bool endsRecording() const { return outcome != Outcome::refused; }
        bool beeps() const { return outcome == Outcome::refused; }
        bool operator==(const Step&) const = default;
    };
    /// Changes the settings where the press is accepted; otherwise the recording goes on.
    Step take(const KeyPress& press);

  private:
    KovaShortcutSettings& settings_;
    KovaShortcutAction action_;
};

} // namespace kova
