// Decides for each key press during the recording of a shortcut. Delete removes the action's shortcut, and Escape
// cancels the recording. Any other key needs a modifier, and the combination must not belong to another action. Main
// thread only.
#pragma once

#include "commands/KovaShortcutSettings.h"

#include <string>
#include <string_view>

namespace kova {

inline constexpr std::string_view kRecorderPrompt = "Type Shortcut…"; // shown during the recording

/// The label of a key without a character. Stored configurations contain exactly this text.
inline constexpr std::string_view kUnknownKeyLabel = "Key (event.keyCode)";

/// The message for a combination that the action `holder` already has.
std::string conflictMessage(KovaShortcutAction holder);

/// Whether these modifiers are enough; Shift alone is not.
bool canBeShortcut(std::uint64_t modifierFlags);

/// The label of the pressed key.
std::string keyLabel(const KeyPress& press);

class ShortcutRecorder {
  public:
    /// The settings outlive the recorder.
    ShortcutRecorder(KovaShortcutSettings& settings, KovaShortcutAction action) :
        settings_(settings), action_(action) {}

    enum class Outcome { recorded, cleared, canceled, refused };
    struct Step {
        Outcome outcome = Outcome::refused;
        std::string message; // why the press was refused; empty for a beep only
        bool endsRecording() const { return outcome != Outcome::refused; }
        bool beeps() const { return outcome == Outcome::refused; }
        bool operator==(const Step&) const = default;
    };
    /// Changes the settings if the press is accepted; otherwise the recording continues.
    Step take(const KeyPress& press);

  private:
    KovaShortcutSettings& settings_;
    KovaShortcutAction action_;
};

} // namespace kova
