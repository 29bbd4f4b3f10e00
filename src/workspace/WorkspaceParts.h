// The objects that own the workspace's state. Each operation gets references to the objects that it uses. All objects
// are told about renamed ids and polls, and all are asked whether they wait for something.
#pragma once

#include "windowing/AccessibilityWindowService.h"
#include "workspace/ArrangementMemory.h"
#include "workspace/AwaitedWindows.h"
#include "workspace/DisplayMemory.h"
#include "workspace/FloatingWindows.h"
#include "workspace/FocusMode.h"
#include "workspace/FrameKeeper.h"
#include "workspace/LiveWindows.h"
#include "workspace/PointerInteraction.h"
#include "workspace/RequestBatch.h"
#include "workspace/SessionRestore.h"
#include "workspace/StatusMessages.h"
#include "workspace/TileAssignments.h"
#include "workspace/TileMemory.h"
#include "workspace/TransitionRecovery.h"
#include "workspace/UndoHistory.h"
#include "workspace/WorkspaceServices.h"
#include "workspace/WorkspaceState.h"

#include <concepts>
#include <functional>
#include <memory>
#include <string>
#include <tuple>

namespace kova {

/// A part without one of these functions does not compile, so that no part is forgotten when an id changes or after a
/// poll.
template <class T>
concept WorkspacePart = requires(T& part, const T& constPart, const WindowID& window, const DisplayID& display,
                                 const PollContext& poll) {
    part.rename(window, window);
    part.renameDisplay(display, display);
    part.onPoll(poll);
    { constPart.isWaiting() } -> std::same_as<bool>;
};

struct WorkspaceParts {
    /// The functions that the parts call when one of their timers has ended.
    struct Callbacks {
        std::function<void()> displaysSettled;
        std::function<void()> moveDivider;
        std::function<void()> pollsResumed;
        std::function<std::optional<WorkspaceSession>()> describeSession;
    };
    WorkspaceParts(const WorkspaceServices& servicesOfAgent, Callbacks callbacks);
    WorkspaceParts(const WorkspaceParts&) = delete;
    WorkspaceParts& operator=(const WorkspaceParts&) = delete;

    WorkspaceServices services;
    std::shared_ptr<ChangeNotifications> changeNotifications;
    std::shared_ptr<AccessibilityWindowService> windowService;
    RequestBatch requests;
    WorkspaceState state;
    StatusMessages messages;
    LiveWindows liveWindows;
    TileAssignments assignments;
    TileMemory tileMemory;
    DisplayMemory displays;
    UndoHistory undo;
    FocusMode focusMode{state.focusMode};
    FloatingWindows floating{state.floatingWindowIDs};
    PointerInteraction pointer;
    FrameKeeper frames;
    TransitionRecovery recovery;
    SessionRestore session;
    AwaitedWindows awaited{state.pendingLaunches, state.sceneReport};
    ArrangementMemory arrangementMemory;

    /// Replaces the id in every object that stores it.
    void renameWindow(const WindowID& formerID, const WindowID& newID);
    void renameDisplay(const DisplayID& formerID, const DisplayID& newID);
    /// Call before a scene is opened. Forgets the tiles that are remembered for disconnected displays, for former
    /// layouts and from the former session, and skips the arrangement after the start.
    void forgetPlaces();
    /// Call after a poll. The objects forget closed windows and expired entries.
    void onPoll();
    /// True if polls must continue because an object waits for a deadline or a change.
    bool isWaiting() const;

  private:
    /// All parts that satisfy `WorkspacePart`. The assignments are plain data and do not.
    template <class Self>
    static auto all(Self& self) {
        return std::tie(self.tileMemory, self.liveWindows, self.displays, self.undo, self.focusMode, self.floating,
                        self.pointer, self.frames, self.session, self.awaited, self.arrangementMemory, self.recovery);
    }
};

} // namespace kova
