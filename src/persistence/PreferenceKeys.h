// All preference keys. A key contains the version of its value's format, so that a new format gets a new key.
#pragma once

#include <array>
#include <string_view>

namespace kova::preferenceKey {

inline constexpr std::string_view workspaceProfile = "KOVA.workspaceProfile.v1";
inline constexpr std::string_view autoArrangeLearning = "KOVA.autoArrangeLearning.v1";
inline constexpr std::string_view workspaceProduct = "KOVA.workspaceProduct.v1";
inline constexpr std::string_view accentColor = "KOVA.accentColor.v1";
inline constexpr std::string_view useThemeBackground = "KOVA.useThemeBackground.v1";
inline constexpr std::string_view showBrain = "KOVA.showBrain.v1";
inline constexpr std::string_view showTileBackgrounds = "KOVA.showTileBackgrounds.v1";
inline constexpr std::string_view continuousManagement = "KOVA.continuousManagement.v1";
inline constexpr std::string_view bringNextForward = "KOVA.bringNextForward.v1";
inline constexpr std::string_view workspaceSession = "KOVA.workspaceSession.v1";
inline constexpr std::string_view keyboardShortcuts = "KOVA.keyboardShortcuts.v1";
inline constexpr std::string_view startAtLogin = "KOVA.startAtLogin.v1";
inline constexpr std::string_view hideSystemDock = "KOVA.hideSystemDock.v2";
inline constexpr std::string_view onboardingCompleted = "KOVA.onboarding.completed.v1";
inline constexpr std::string_view userInterface = "KOVA.userInterface.v1"; // whether kova-ui is started
inline constexpr std::string_view launchCounts = "KOVA.launchCounts.v1";   // number of launches of each application
/// On a Mac: the processes that an agent has hidden, each by process id and start time.
inline constexpr std::string_view hiddenApplications = "KOVA.hiddenApplications.v1";

/// A user whose preferences contain any of these keys is not a new user.
inline constexpr std::array existingUserKeys = {workspaceProfile,    useThemeBackground, showBrain,
                                                showTileBackgrounds, accentColor,        autoArrangeLearning};

} // namespace kova::preferenceKey
