// The scenes that clients deleted last, so that a deletion can be undone. Kept in memory only. Main thread only.
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
    static constexpr std::size_t kMost = 8; // older ones are dropped

    explicit DeletedScenes(WorkspaceController& controller) : controller_(controller) {}

    ControlReply deleteScene(const JsonCursor& parameters);
    /// Puts the scene that was deleted last back to its place in the list.
    ControlReply undelete();
    /// Whether the current status message, if any, reports the last deletion.
    bool isShownByStatusMessage() const;

  private:
    struct Deleted {
        WorkspaceScene scene;
        std::size_t index = 0; // in the list
    };
    WorkspaceController& controller_;
    std::deque<Deleted> deleted_;     // the newest last
    std::uint64_t messageNumber_ = 0; // of the last deletion's message
};

} // namespace kova
