// Focus mode: the zoomed window, and the snapshot that is restored at its end. Always true: the mode is published
// exactly while a snapshot is stored.
#pragma once

#include "support/Published.h"
#include "workspace/PartDefaults.h"
#include "workspace/UndoHistory.h"
#include "workspace/WorkspaceState.h"

#include <optional>
#include <string>
#include <vector>

namespace kova {

class FocusMode : public PartWithoutPolls {
  public:
    using PublishedMode = Published<std::optional<WorkspaceFocusMode>>;

    /// What the end of focus mode restores.
    struct Before {
        WorkspaceUndoSnapshot snapshot;
        std::vector<UndoEntry> history; // before the undo step of focus mode, which can push out the oldest entry
    };

    explicit FocusMode(PublishedMode& published) : published_(published) {}

    void enter(WorkspaceFocusMode mode, Before before);
    /// Ends focus mode, if it is on. The caller decides whether the result is restored or dropped.
    std::optional<Before> leave();

    bool isOn() const { return before_.has_value(); }
    bool isZoomed(const WindowID& windowID) const;
    bool ownsDisplay(const DisplayID& displayID) const;
    /// The display that the window owns in focus mode; absent for every other window.
    std::optional<DisplayID> displayOf(const WindowID& windowID) const;
    const std::optional<WorkspaceFocusMode>& mode() const { return *published_; }
    /// The snapshot that the end of focus mode restores; null when focus mode is off. Changes on displays without the
    /// zoomed window are written into this snapshot, so that the end of focus mode keeps them.
    WorkspaceUndoSnapshot* snapshot() { return before_ ? &before_->snapshot : nullptr; }
    const WorkspaceUndoSnapshot* snapshot() const { return before_ ? &before_->snapshot : nullptr; }

    void forgetApplication(const std::string& applicationKey);
    void rename(const WindowID& windowID, const WindowID& newID);
    void renameDisplay(const DisplayID& displayID, const DisplayID& newID);

  private:
    PublishedMode& published_;
    std::optional<Before> before_;
};

} // namespace kova
