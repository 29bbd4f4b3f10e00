// Recognizes windows whose ids have changed: after a sleep, after a restart of the agent, or because another tab of a
// native tab group is shown.
#pragma once

#include "support/Identifiers.h"
#include "windowing/ManagedWindow.h"

#include <optional>
#include <string>
#include <vector>

namespace kova {

/// The data of a window by which it can be recognized under another id.
struct ManagedWindowRecoveryIdentity {
    WindowID id;
    pid_t processIdentifier = 0;
    std::optional<BundleID> bundleIdentifier{};
    std::string title{};
    std::optional<CGRect> frame{}; // window-service space
    bool operator==(const ManagedWindowRecoveryIdentity&) const = default;
};

ManagedWindowRecoveryIdentity recoveryIdentity(const ManagedWindow& window);

/// A recognized window: its former id and its present id.
struct WindowSuccessor {
    WindowID formerID;
    WindowID id;
    bool operator==(const WindowSuccessor&) const = default;
};

/// Matches the live `candidates` to missing windows by process, bundle identifier, title and frame (within 2 points).
/// If no candidate has the frame, the same origin or the same size is enough, because a transition rarely both moves
/// and resizes a window. Ambiguous matches are dropped.
std::vector<WindowSuccessor> recognizeWindows(const std::vector<ManagedWindowRecoveryIdentity>& missing,
                                              const std::vector<const ManagedWindow*>& candidates);

/// Matches the tabs of a native tab group by process and frame (within 2 points), whatever their titles. Ambiguous
/// matches are dropped.
std::vector<WindowSuccessor> recognizeTabs(const std::vector<ManagedWindowRecoveryIdentity>& missing,
                                           const std::vector<const ManagedWindow*>& candidates);

} // namespace kova
