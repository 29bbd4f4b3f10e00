// Owns the objects that hold the workspace's state, and the operations on them. It determines the order in which they
// handle events (start, polls, sleep and lock, actions, end), and is the only entry point for actions. Only its
// operations move windows of other applications. Main thread only.
#pragma once

#include "workspace/Outcome.h"
#include "workspace/RefreshCycle.h"
#include "workspace/WorkspaceAction.h"
#include "workspace/WorkspaceOperations.h"
#include "workspace/WorkspaceParts.h"

#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <variant>
#include <vector>

namespace kova {

class WorkspaceController {
  public:
    explicit WorkspaceController(const WorkspaceServices& services);
    ~WorkspaceController();
    WorkspaceController(const WorkspaceController&) = delete;
    WorkspaceController& operator=(const WorkspaceController&) = delete;

    // Start, end and polls
    void start(bool promptForPermission);
    /// Leaves focus mode and stops managing windows.
    void stop();
    /// Starts a poll now. No-op while a poll is under way.
    void refresh();
    /// The same as `RefreshCycle::awaitCurrent`. For work on windows that have just been opened.
    [[nodiscard]] bool awaitCurrent(std::function<void()> work) { return refreshCycle_.awaitCurrent(std::move(work)); }
    /// Reads the permission again and starts a poll.
    void recheckAccessibility();
    bool isRunning() const { return refreshCycle_.isRunning(); }
    bool hasPolled() const { return refreshCycle_.hasResult(); } // true after the first applied poll
    /// Call at the beginning of a transition. No poll is made and no window is moved until
    /// `resumeAfterSystemTransition`.
    void suspendForSystemTransition();
    void resumeAfterSystemTransition();

    /// Performs the action and returns its outcome. The outcome's message also becomes the status message, except for a
    /// silent refusal, such as that of an undo when the history is empty.
    Outcome perform(const WorkspaceAction& action);

    // Queries. They are documented in the classes to which they are passed on.
    const WorkspaceState& state() const { return parts_.state; }
    /// All live windows, also those that are elsewhere or excluded.
    const std::vector<ManagedWindow>& liveWindows() const { return parts_.liveWindows.all(); }
    /// The windows of ordinary applications that KOVA does not manage, without dialogs, each with the reason.
    const std::vector<UnmanagedWindow>& unmanagedWindows() const { return parts_.liveWindows.unmanaged(); }
    /// The dialogs of the live windows. Dialogs are not live windows themselves.
    const AttachedDialogs& dialogs() const { return parts_.liveWindows.dialogs(); }
    const TileAssignments& assignments() const { return parts_.assignments; }
    const UndoHistory& undoHistory() const { return parts_.undo; }
    /// The plan of the last arrangement; empty before the first arrangement.
    const ArrangementPlan& lastArrangement() const { return parts_.arrangementMemory.lastPlan(); }
    /// The learned weights of slots for applications. Never null.
    const Published<ArrangementMemory::Learning>& learning() const {
        return parts_.arrangementMemory.publishedLearning();
    }
    const std::vector<PendingSceneWindowPlacement>& pendingSceneWindowPlacements() const {
        return parts_.awaited.scene().pending;
    }
    /// The number of status messages shown so far. A repeated text counts as well.
    std::uint64_t messagesShown() const { return parts_.messages.count(); }
    /// Whether undo would revert the action that the status message reports.
    bool isMessageUndoable() const { return parts_.messages.isUndoable(); }

    std::optional<std::string> whyWindowsAreUnavailable() const { return ops_.access.whyWindowsAreUnavailable(); }
    std::string permissionProblem() const { return ops_.access.permissionProblem(); }

    const ThemeRegistry& registry() const { return ops_.geometry.registry(); }
    const std::vector<LayoutDefinition>& catalogue() const { return ops_.geometry.catalogue(); }
    const LayoutDefinition* resolvedLayout(const DisplayID& displayID) const {
        return ops_.geometry.resolvedLayout(displayID);
    }
    std::vector<WorkspaceTile> tiles() const { return ops_.geometry.tiles(); }
    std::vector<DisplayLayoutDivider> dividers() const { return ops_.pointerActions.dividers(); }
    std::vector<DisplayLayoutDivider> dividersOn(const DisplayID& displayID) const {
        return ops_.geometry.dividersOn(displayID);
    }
    std::optional<CGRect> dividerFrameOnScreen(const DisplayLayoutDivider& divider) const {
        return ops_.geometry.dividerFrameOnScreen(divider);
    }

    const ManagedWindow* focusedWindow() const { return ops_.finder.focusedWindow(); }
    const ManagedWindow* windowOrFocused(const std::optional<WindowID>& windowID) const {
        return ops_.finder.windowOrFocused(windowID);
    }
    const ManagedWindow* windowOfDialog(const ManagedWindow& dialog) const {
        return ops_.finder.windowOfDialog(dialog);
    }
    std::optional<DisplayID> currentDisplayID() const { return ops_.finder.currentDisplayID(); }
    std::optional<DisplayID> displayIDOfWindow(const WindowID& windowID) const {
        return ops_.finder.displayIDOfWindow(windowID);
    }
    std::optional<WindowID> nextInStack(const action::CycleStack& cycle) const {
        return ops_.finder.nextInStack(cycle);
    }
    std::string whyNothingNext(const action::CycleStack& cycle) const { return ops_.finder.whyNothingNext(cycle); }
    std::optional<std::string> whyNoStartingPoint(const std::optional<WindowID>& windowID) const {
        return ops_.finder.whyNoStartingPoint(windowID);
    }
    std::optional<WindowID> managedWindowUnder(CGPoint pointOnScreen) const {
        return ops_.finder.managedWindowUnder(pointOnScreen);
    }
    std::optional<CGRect> currentFrame(const WindowID& windowID) const { return ops_.finder.currentFrame(windowID); }
    std::optional<ManagedWindow> findWindow(const WorkspaceWindowReference& reference,
                                            const std::set<WindowID>& excluded) const {
        return ops_.finder.findWindow(reference, excluded);
    }

    bool hasWindowToArrange() const { return ops_.arrangement.hasWindowToArrange(); }
    /// The plan that an arrangement would carry out now.
    ArrangementPlan planArrangement() const { return ops_.arrangement.planArrangement(); }
    std::variant<WindowPlan, WindowRefusal> planCommand(const WindowCommand& command) const {
        return ops_.commands.planCommand(command);
    }
    std::optional<WindowID> windowLastFocusedOn(const DisplayID& displayID) const {
        return ops_.commands.windowLastFocusedOn(displayID);
    }
    std::optional<std::string> whyWindowsStay() const { return ops_.arrangement.whyWindowsStay(); }
    void readFrames(std::function<void()> read) { ops_.report.readFrames(std::move(read)); }
    std::vector<PlacementFinding> verifyPlacements() const { return ops_.report.verifyPlacements(); }
    std::vector<std::string> whyItStays(const ManagedWindow& window) const { return ops_.report.whyItStays(window); }

    std::vector<LaunchableApplication> launchableApplications() const {
        return ops_.applications.launchableApplications();
    }
    std::optional<LaunchableApplication> launchableApplication(const BundleID& bundleIdentifier) const {
        return ops_.applications.launchableApplication(bundleIdentifier);
    }
    std::vector<RunningApplication> regularApplicationsToForceQuit() const {
        return ops_.applications.regularApplicationsToForceQuit();
    }

    std::optional<Uuid> findScene(const std::string& name) const { return ops_.documents.findScene(name); }
    std::optional<std::vector<SceneDifference>> diffScene(const Uuid& id) const { return ops_.scenes.diffScene(id); }
    Decoded<std::string> exportWorkspaceDocument() const { return ops_.documents.exportWorkspaceDocument(); }
    Decoded<WorkspaceImportCounts> previewImport(std::string_view data) const {
        return ops_.documents.previewImport(data);
    }
    std::optional<RuleExplanation> explainRules(const WindowID& windowID) const {
        return ops_.rules.explainRules(windowID);
    }

  private:
    // Actions (WorkspaceActions.cpp)
    Outcome carryOut(const WorkspaceAction& action);
    Outcome undoLastAction();

    // Polls (WorkspaceRefresh.cpp)
    void applyPoll(PollResult result);
    void applyGrantedPoll(WindowEnumeration found, Seconds begun, bool isRecovering, bool justGranted);
    void presentPoll(bool isRecovering);
    void publishWindows();
    void noteFocus();
    void followShownSpace();
    void requestPendingFrames();
    void applyDenied();
    void keepAssignmentsValid();
    void presentationResumed();
    void watchSession();
    std::set<WindowID> takeHidden();

    // Sleep, lock and session switches (WorkspaceRecovery.cpp)
    void beginTransitionRecovery();
    bool applyLockedSession(bool pollFoundLocked);
    void adoptSuccessors(const std::vector<WindowSuccessor>& successors);
    void recoverAssignedWindows();

    WorkspaceParts parts_;
    WorkspaceOperations ops_;
    RefreshCycle refreshCycle_;
    std::vector<Subscription> subscriptions_;
    Lifetime lifetime_;
};

} // namespace kova
