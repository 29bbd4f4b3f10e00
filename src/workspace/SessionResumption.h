// Taking up what the agent before this one has left: which of its windows are still there, and under which names.
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

/// What tells a process from every other that had or will have its number; absent when nothing does.
using ProcessStartOf = std::function<std::optional<std::string>(pid_t)>;

/// How long a window is awaited whose process goes on but which is not seen yet.
inline constexpr Seconds kResumptionTimeout{10};

/// By the ids of the former session.
struct ResumedWindows {
    std::map<std::string, std::string> idNow;
    std::set<std::string> awaited;
};

/// A window is the same when its id and the start of its process are; where no start is known, when bundle identifier
/// and title are as well. One whose id changed is recognised by what it is. Windows of another process are not
/// recognized.
ResumedWindows resumedWindows(const WorkspaceSession& session, const std::vector<ManagedWindow>& liveWindows,
                              const ProcessStartOf& processStartOf);

/// The tiles with the windows that are still there, under their names of now, and those that are awaited; nothing at
/// all when the record is not sound.
TileAssignments resumedTiles(const WorkspaceSessionTiles& tiles, const ResumedWindows& windows);
WorkspaceSessionTiles sessionTiles(const TileAssignments& assignments);

} // namespace kova
