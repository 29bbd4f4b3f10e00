// Recognizes windows whose id has changed, after a sleep or a restart of the agent.
#pragma once

#include "support/Identifiers.h"
#include "windowing/ManagedWindow.h"

#include <optional>
#include <string>
#include <vector>

namespace kova {

/// The data of a window that is remembered at the beginning of a transition.
struct ManagedWindowRecoveryIdentity {
    WindowID id;
    pid_t processIdentifier = 0;
    std::optional<BundleID> bundleIdentifier{};
    std::string title{};
    std::optional<CGRect> frame{}; // window-service space
    bool operator==(const ManagedWindowRecoveryIdentity&) const = default;
};

ManagedWindowRecoveryIdentity recoveryIdentity(const ManagedWindow& window);

/// A window with its former id.
struct WindowSuccessor {
    WindowID formerID;
    WindowID id;
    bool operator==(const WindowSuccessor&) const = default;
};

/// Matches the live `candidates` to missing windows by process, bundle identifier, title and frame (within 2 points).
/// If no candidate has the frame, the same origin or size is enough, since a transition moves or resizes windows, but
/// seldom both. Ambiguous matches are dropped.
std::vector<WindowSuccessor> recognizeWindows(const std::vector<ManagedWindowRecoveryIdentity>& missing,
                                              const std::vector<const ManagedWindow*>& candidates);

/// Matches the tabs of a native tab group by process and frame (within 2 points), whatever their titles.
std::vector<WindowSuccessor> recognizeTabs(const std::vector<ManagedWindowRecoveryIdentity>& missing,
                                           const std::vector<const ManagedWindow*>& candidates);

} // namespace kova
