// Knowing a window again whose identifier has changed: after sleep, or for an agent that has started anew.
#pragma once

#include "windowing/ManagedWindow.h"

#include <optional>
#include <string>
#include <vector>

namespace kova {

/// What is remembered of a window in case that the desktop goes away.
struct ManagedWindowRecoveryIdentity {
    std::string id;
    pid_t processIdentifier = 0;
    std::optional<std::string> bundleIdentifier{};
    std::string title{};
    std::optional<CGRect> frame{}; // window-service space
    bool operator==(const ManagedWindowRecoveryIdentity&) const = default;
};

ManagedWindowRecoveryIdentity recoveryIdentity(const ManagedWindow& window);

/// A window that was known under another identifier before.
struct WindowSuccessor {
    std::string formerID;
    std::string id;
    bool operator==(const WindowSuccessor&) const = default;
};

/// Which of the live `candidates` are the windows that are missing. A window fits by process, bundle identifier and
/// title, and by its frame within 2 points; where none has the whole frame, by its place or its size, as a desktop that
/// comes and goes moves windows or resizes them, but seldom both. Ambiguous matches are
/// dropped.
std::vector<WindowSuccessor> recogniseWindows(const std::vector<ManagedWindowRecoveryIdentity>& missing,
                                              const std::vector<const ManagedWindow*>& candidates);

/// The same where a native tab group shows another of its tabs: a window of the same process with the same frame within
/// 2 points, whatever its title.
std::vector<WindowSuccessor> recogniseTabs(const std::vector<ManagedWindowRecoveryIdentity>& missing,
                                           const std::vector<const ManagedWindow*>& candidates);

} // namespace kova
