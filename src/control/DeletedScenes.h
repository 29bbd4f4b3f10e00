// Keeps the scenes that clients deleted last, so that a deletion can be undone. They are kept in memory only. Main
// thread only.
#pragma once

#include "control/ControlHandling.h"
#include "persistence/WorkspaceProductDocument.h"
#include "support/JsonDecoding.h"

#include <cstddef>
#include <cstdint>
#include <deque>

namespace kova {

class WorkspaceController;

class DeletedScenes {
  public:
    static constexpr std::size_t kMaximumCount = 8; // of kept scenes; then the oldest one is dropped

    explicit DeletedScenes(WorkspaceController& controller) : controller_(controller) {}

    ControlReply deleteScene(const JsonCursor& parameters);
    /// Puts the scene that was deleted last back into its place in the list of scenes.
    ControlReply undelete();
    /// True if the status message reports the last deletion.
    bool isShownByStatusMessage() const;

  private:
    struct Deleted {
        WorkspaceScene scene;
        std::size_t index = 0; // in the list of scenes
    };
    WorkspaceController& controller_;
    std::deque<Deleted> deleted_;     // the newest last
    std::uint64_t messageNumber_ = 0; // of the status message that reports the last deletion
};

} // namespace kova
