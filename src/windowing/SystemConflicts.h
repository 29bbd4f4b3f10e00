// Features of a Mac that conflict with tiles and shortcuts, and the diagnostics about them.
#pragma once

#include "windowing/DiagnosticsServicing.h"
#include "windowing/KeyMonitorServicing.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace kova {

/// Which of these features are on. A feature whose state is unknown counts as off.
struct SystemConflicts {
    bool isSecureInputOn = false;       // keys are not reported to other programs
    bool tilesWindowsAtEdges = false;   // a window dropped at an edge of the display fills a half of it
    bool tilesWindowsAtMenuBar = false; // a window dropped at the menu bar fills the display
    bool isStageManagerOn = false;
    bool isVoiceOverOn = false;
};

/// One line for each conflict.
std::vector<DiagnosticLine> diagnosticLines(const SystemConflicts& conflicts);

/// What to do about a permission that the system shows as granted but ignores. `bundleIdentifier`: of the application;
/// empty for a program that is not part of an application.
std::string stalePermissionRemedy(const std::string& bundleIdentifier);

/// A shortcut of the system itself.
struct SystemHotKey {
    std::uint16_t keyCode = 0;
    std::uint32_t carbonModifiers = 0; // the Mac's older modifier bits: Command 0x100, Shift 0x200, ...
    bool isEnabled = false;
};

/// The registered combinations that are shortcuts of the system as well.
std::vector<KeyCombination> heldBySystem(std::span<const KeyCombination> claimed, std::span<const SystemHotKey> keys);

} // namespace kova
