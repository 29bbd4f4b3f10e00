// Finds the windows of the stored session among the present ones.
#pragma once

#include "persistence/WorkspaceSession.h"
#include "support/MainQueue.h"
#include "windowing/ManagedWindow.h"
#include "workspace/TileAssignments.h"

#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace kova {

/// A text that distinguishes a process from other processes with the same id at other times; absent if unknown.
using ProcessStartOf = std::function<std::optional<std::string>(pid_t)>;

/// How long the agent awaits a window that is not listed although its process runs.
inline constexpr Seconds kResumptionTimeout{10};

/// The recognized windows with their present ids, and the awaited windows. Keys and awaited ids are those of the former
/// session.
struct ResumedWindows {
    std::map<WindowID, WindowID> idNow;
    std::set<WindowID> awaited;
};

/// Recognizes a window if its id and the start of its process are unchanged; if no start is known, bundle identifier
/// and title must be unchanged, too. A window with a new id is recognized by its title and frame. Windows of another
/// process are not recognized.
ResumedWindows resumedWindows(const WorkspaceSession& session, const std::vector<ManagedWindow>& liveWindows,
                              const ProcessStartOf& processStartOf);

/// The recorded tiles with the windows that still exist, under their present ids, and with the awaited windows; empty
/// if the record is inconsistent.
TileAssignments resumedTiles(const WorkspaceSessionTiles& tiles, const ResumedWindows& windows);
WorkspaceSessionTiles sessionTiles(const TileAssignments& assignments);

} // namespace kova
