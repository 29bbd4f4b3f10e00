// The objects that own the workspace's state. Operations get references to those that they use. Renamed ids, polls and
// `isWaiting` concern all of these objects.
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

/// Every part must implement what happens when an id changes and after a poll, so that no part is forgotten.
template <class T>
concept WorkspacePart = requires(T& part, const T& constPart, const WindowID& window, const DisplayID& display,
                                 const PollContext& poll) {
    part.rename(window, window);
    part.renameDisplay(display, display);
    part.onPoll(poll);
    { constPart.isWaiting() } -> std::same_as<bool>;
};

struct WorkspaceParts {
    /// Callbacks of the objects' timers.
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

    /// Renames the id in every object that stores it.
    void renameWindow(const WindowID& formerID, const WindowID& newID);
    void renameDisplay(const DisplayID& formerID, const DisplayID& newID);
    /// Call before a scene is opened: forgets the tiles of windows on disconnected displays, in former layouts and in
    /// the former session, and skips the arrangement after the start.
    void forgetPlaces();
    /// Passes the poll on: objects forget closed windows and expired entries.
    void onPoll();
    /// Whether any object waits for time to pass, so that polls must continue.
    bool isWaiting() const;

  private:
    /// All parts except the assignments, which are a value.
    template <class Self>
    static auto all(Self& self) {
        return std::tie(self.tileMemory, self.liveWindows, self.displays, self.undo, self.focusMode, self.floating,
                        self.pointer, self.frames, self.session, self.awaited, self.arrangementMemory, self.recovery);
    }
};

} // namespace kova
