#include "windowing/SystemConflicts.h"

#include <algorithm>
#include <utility>

namespace kova {

namespace {

std::uint64_t modifierFlags(std::uint32_t carbonModifiers) {
    constexpr std::pair<std::uint32_t, std::uint64_t> kFlags[] = {{0x100, modifierFlag::command},
                                                                  {0x200, modifierFlag::shift},
                                                                  {0x800, modifierFlag::option},
                                                                  {0x1000, modifierFlag::control}};
    std::uint64_t flags = 0;
    for (const auto& [carbon, flag] : kFlags) {
        if ((carbonModifiers & carbon) != 0) flags |= flag;
    }
    return flags;
}

} // namespace

std::vector<DiagnosticLine> diagnosticLines(const SystemConflicts& conflicts) {
    using enum DiagnosticVerdict;
    std::vector<DiagnosticLine> lines;
    if (conflicts.isSecureInputOn) {
        lines.push_back({"secure input", wrong,
                         "A program has switched on secure keyboard entry, so that KOVA receives no shortcuts. Usually "
                         "a password field or a terminal does; leave the field, or end that program."});
    }
    if (conflicts.tilesWindowsAtEdges || conflicts.tilesWindowsAtMenuBar) {
        lines.push_back(
            {"window tiling of macOS", note,
             "macOS tiles windows that are dragged to an edge of the display, and then KOVA moves them again. "
             "Switch off “Drag windows to screen edges to tile” and “Drag windows to menu bar to fill screen” "
             "under System Settings → Desktop & Dock."});
    }
    if (conflicts.isStageManagerOn) {
        lines.push_back(
            {"Stage Manager", note,
             "Stage Manager puts the windows of other applications aside whenever one comes forward. Switch it "
             "off under System Settings → Desktop & Dock to see several tiles at once."});
    }
    if (conflicts.isVoiceOverOn) {
        lines.push_back(
            {"VoiceOver", note,
             "VoiceOver uses Control+Option, with which the standard shortcuts of KOVA begin. Choose others "
             "with “kova shortcut set”, or another VoiceOver modifier."});
    }
    return lines;
}

std::string stalePermissionRemedy(const std::string& bundleIdentifier) {
    const std::string remedy =
        "macOS ignores the Accessibility permission of KOVA, as it does after an update with another signature: remove "
        "KOVA from the list under System Settings → Privacy & Security → Accessibility and add it again";
    if (bundleIdentifier.empty())
        return remedy + "."; // “tccutil reset” without an identifier would reset all applications
    return remedy + ", or run “tccutil reset Accessibility " + bundleIdentifier + "” and start KOVA anew.";
}

std::vector<KeyCombination> heldBySystem(std::span<const KeyCombination> claimed, std::span<const SystemHotKey> keys) {
    std::vector<KeyCombination> held;
    for (const KeyCombination& combination : claimed) {
        const bool isHeld = std::ranges::any_of(keys, [&](const SystemHotKey& key) {
            return key.isEnabled && key.keyCode == combination.keyCode &&
                   modifierFlags(key.carbonModifiers) == combination.modifierFlags;
        });
        if (isHeld) held.push_back(combination);
    }
    return held;
}

} // namespace kova
