// The undo history: at most 30 snapshots, each taken before an action. Undo restores and removes the newest snapshot.
#pragma once

#include "layout/AutoArrangeLearning.h"
#include "layout/WorkspaceProfile.h"
#include "support/MainQueue.h"
#include "workspace/PartDefaults.h"
#include "workspace/RememberedLayouts.h"
#include "workspace/SpaceMemory.h"
#include "workspace/TileAssignments.h"

#include <sys/types.h>

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace kova {

struct WorkspaceUndoSnapshot {
    TileAssignments tiles;
    SpaceMemory spaces;
    std::map<WindowID, CGRect> windowFrames; // window-service space
    std::set<WindowID> minimizedWindowIDs;
    std::set<WindowID> maximizedWindowIDs;
    std::set<WindowID> visibleWindowIDs;
    std::set<pid_t> hiddenProcessIdentifiers; // of hidden applications
    std::set<WindowID> floatingWindowIDs;     // windows that a command made floating
    std::optional<Uuid> activeSceneID;
    WorkspaceProfile profile;
    std::string accentColorID;
    RememberedLayouts rememberedLayouts;
    std::shared_ptr<const AutoArrangeLearningModel> learning;
    /// Whether the window existed when the snapshot was taken.
    bool knows(const WindowID& windowID) const {
        return windowFrames.contains(windowID) || minimizedWindowIDs.contains(windowID) ||
               visibleWindowIDs.contains(windowID);
    }
    void rename(const WindowID& windowID, const WindowID& newID);
    /// Renames the display, also in the profile.
    void renameDisplay(const DisplayID& displayID, const DisplayID& newID);
    /// Removes what was learned of the application, so that undo does not restore it.
    void forgetApplication(const std::string& applicationKey);
    bool operator==(const WorkspaceUndoSnapshot&) const = default;
};

/// The description of an entry for the user.
struct UndoLabel {
    std::string action;               // for example "arrange" or "move left"
    std::vector<std::string> windows; // the names of the applications that own the windows concerned
    bool operator==(const UndoLabel&) const = default;
};

struct UndoEntry {
    WorkspaceUndoSnapshot snapshot; // what undo restores
    UndoLabel label;
    WallTime time{};
    std::uint64_t number = 0; // given by the history; grows with each entry
    bool operator==(const UndoEntry&) const = default;
};

class UndoHistory : public PartWithoutPolls {
  public:
    static constexpr std::size_t kLimit = 30;

    /// Drops the oldest entries beyond the limit.
    void push(UndoEntry entry);
    /// The newest entry; absent when there is none.
    std::optional<UndoEntry> takeNewest();
    bool isEmpty() const { return entries_.empty(); }
    std::size_t size() const { return entries_.size(); }
    /// The number of the newest entry; 0 when there is none.
    std::uint64_t newestNumber() const { return isEmpty() ? 0 : entries_.back().number; }

    void rename(const WindowID& windowID, const WindowID& newID);
    void renameDisplay(const DisplayID& displayID, const DisplayID& newID);
    void forgetApplication(const std::string& applicationKey);

    /// The whole history. The undo step of focus mode can push out the oldest entry, so the end of focus mode restores
    /// the history from before that step.
    const std::vector<UndoEntry>& entries() const { return entries_; }
    void restore(std::vector<UndoEntry> entries) { entries_ = std::move(entries); }

  private:
    std::vector<UndoEntry> entries_; // oldest first
    std::uint64_t lastNumber_ = 0;
};

} // namespace kova
