// The single engine: the live picture of every managed window, which window is in which tile, and every operation of
// the user. The only object that moves other applications' windows. Main thread only.
//
// Each concern has its own file; this header reads as the list of what a user can do.
#pragma once

#include "persistence/WorkspaceProductDocument.h"
#include "themes/ThemeRegistry.h"
#include "windowing/AccessibilityWindowService.h"
#include "workspace/Arranger.h"
#include "workspace/AwaitedWindows.h"
#include "workspace/DisplayLayouts.h"
#include "workspace/DisplayMemory.h"
#include "workspace/FocusMode.h"
#include "workspace/ForceQuitting.h"
#include "workspace/FrameKeeper.h"
#include "workspace/LeftAlone.h"
#include "workspace/LiveWindows.h"
#include "workspace/Outcome.h"
#include "workspace/PointerInteraction.h"
#include "workspace/RefreshCycle.h"
#include "workspace/RuleMatching.h"
#include "workspace/SceneCapture.h"
#include "workspace/SceneDifferences.h"
#include "workspace/SessionRestore.h"
#include "workspace/TileAssignments.h"
#include "workspace/TileMemory.h"
#include "workspace/TileRoom.h"
#include "workspace/Transaction.h"
#include "workspace/TransitionRecovery.h"
#include "workspace/UndoHistory.h"
#include "workspace/WindowCommand.h"
#include "workspace/WindowStay.h"
#include "workspace/WorkspaceAction.h"
#include "workspace/WorkspaceRecords.h"
#include "workspace/WorkspaceServices.h"
#include "workspace/WorkspaceState.h"

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <tuple>
#include <vector>

namespace kova {

class WorkspaceController {
  public:
    explicit WorkspaceController(const WorkspaceServices& services);
    ~WorkspaceController();
    WorkspaceController(const WorkspaceController&) = delete;
    WorkspaceController& operator=(const WorkspaceController&) = delete;

    const WorkspaceState& state() const { return state_; }
    /// The last enumeration, unfiltered.
    const std::vector<ManagedWindow>& liveWindows() const { return liveWindows_.all(); }
    /// Dialogs that belong to a window; they are not among `liveWindows`.
    const AttachedDialogs& dialogs() const { return liveWindows_.dialogs(); }
    /// Null for a window that is no dialog.
    const ManagedWindow* windowOfDialog(const ManagedWindow& dialog) const;
    const TileAssignments& assignments() const { return assignments_; }
    const ThemeRegistry& registry() const { return registry_; }

    // Lifecycle
    void start(bool promptForPermission);
    /// Ends management; focus mode is closed and what it changed is restored.
    void stop();
    /// Asks for one poll now; ignored while one is in flight.
    void refresh();
    /// For operations that must know windows opened a moment ago; see `RefreshCycle::awaitCurrent`.
    [[nodiscard]] bool awaitCurrent(std::function<void()> work) { return refreshCycle_.awaitCurrent(std::move(work)); }
    void recheckAccessibility();
    bool isRunning() const { return refreshCycle_.isRunning(); }
    bool hasLooked() const { return refreshCycle_.hasResult(); } // knows the windows, if it may
    /// Around sleep, lock and session switches: no poll, no window moves, until resumed.
    void suspendForSystemTransition();
    void resumeAfterSystemTransition();

    /// Why windows cannot be managed in this session at all; absent where they can, or could with the permission.
    std::optional<std::string> absenceOfWindows() const { return services_.accessibility.absence(); }
    /// What is said without the permission.
    std::string permissionProblem() const;

    /// What became of the action. What is said is shown as the status message as well, but for refusals that a user
    /// sees anyway, such as an undo without anything to undo.
    Outcome perform(const WorkspaceAction& action);
    /// What the command would do now, without doing it.
    std::variant<WindowPlan, WindowRefusal> planCommand(const WindowCommand& command) const;
    /// Grows with every message, also when the same is said again.
    std::uint64_t messagesShown() const { return statusMessageSerial_; }

    // Arrangement
    /// What `arrange` would do now, without doing it.
    ArrangementPlan planArrangement() const;
    /// A sentence for the user when the window manager places windows itself, known by its name or by what it does;
    /// absent as a rule.
    std::optional<std::string> whyWindowsStay() const;
    /// What the last arrangement decided; empty before the first.
    const ArrangementPlan& lastArrangement() const { return arranger_.lastPlan(); }

    // Layouts
    const std::vector<LayoutDefinition>& catalogue() const;
    /// The definition in force on the display, weights applied; null for a display that is not connected.
    const LayoutDefinition* resolvedLayout(const std::string& displayID) const;
    /// The display of the focused window, else the one under the pointer, else the first; absent without displays.
    std::optional<std::string> currentDisplayID() const;
    /// The tiles of every display, in the platform's order and the layouts' order.
    std::vector<WorkspaceTile> tiles() const;

    // Single windows
    /// The live window that has the keyboard, itself or one of its dialogs; null when none has.
    const ManagedWindow* focusedWindow() const;
    /// The named window, else the focused one; null when there is none.
    const ManagedWindow* actingWindow(const std::optional<std::string>& windowID) const;
    /// The display that the window's tile, else most of the window, is on; absent when there is none.
    std::optional<std::string> displayIDOfWindow(const std::string& windowID) const;
    /// The window that the action would bring to the front; absent when no other waits.
    std::optional<std::string> nextInStack(const action::CycleStack& cycle) const;
    /// The shown window of the display that had the keyboard last, else the first in its tiles; absent without any.
    std::optional<std::string> windowLastFocusedOn(const std::string& displayID) const;
    /// Compares the frames of all windows in front of tiles with what was requested.
    std::vector<PlacementFinding> verifyPlacements() const;
    /// What keeps the window where it is, in sentences; empty when nothing does.
    std::vector<std::string> whyItStays(const ManagedWindow& window) const;
    /// Why `cycle` would bring no other window to the front.
    std::string whyNothingNext(const action::CycleStack& cycle) const;
    /// Why no action can begin at the window, the focused one when none is named; absent when one can.
    std::optional<std::string> whyNoStartingPoint(const std::optional<std::string>& windowID) const;

    // Launching and quitting
    /// What menus show, by name; and any installed application by its bundle identifier.
    std::vector<LaunchableApplication> launchableApplications() const;
    std::optional<LaunchableApplication> launchableApplication(const std::string& bundleIdentifier) const;
    /// By tile-target id.
    const std::map<std::string, PendingApplicationPlacement>& pendingApplicationPlacements() const {
        return awaited_.launches();
    }
    /// What was learned of where applications are kept; shared, never null.
    const Published<Arranger::Learning>& learning() const { return arranger_.publishedLearning(); }
    /// What `ForceQuitAll` would end, by name.
    std::vector<RunningApplication> regularApplicationsToForceQuit() const;

    // Scenes
    /// By its exact name, else the first of that name in another case.
    std::optional<Uuid> findScene(const std::string& name) const;
    /// Absent when there is no such scene; empty when opening it would change nothing.
    std::optional<std::vector<SceneDifference>> diffScene(const Uuid& id) const;
    const std::vector<PendingSceneWindowPlacement>& pendingSceneWindowPlacements() const {
        return awaited_.scene().pending;
    }
    const std::set<std::string>& pendingSceneApplicationLaunchBundleIDs() const {
        return awaited_.scene().launchedBundleIDs;
    }
    /// The live window that the reference means; absent when there is none but those excluded.
    std::optional<ManagedWindow> findWindow(const WorkspaceWindowReference& reference,
                                            const std::set<std::string>& excluded) const;

    // Rules
    /// Which rule decides for a live window, and what the others say; absent when there is no such window.
    std::optional<RuleExplanation> explainRules(const std::string& windowID) const;
    /// Windows that rules have been asked about.
    const std::set<std::string>& handledRuleWindowIDs() const { return tileMemory_.placed(); }

    // The document of scenes and rules
    Decoded<std::string> exportWorkspaceDocument() const;
    /// What importing the file would add, without doing it.
    Decoded<WorkspaceImportCounts> previewImport(std::string_view data) const;

    // Dividers
    /// Every boundary that can be dragged; none on a display that a zoomed window owns.
    std::vector<DisplayLayoutDivider> dividers() const;
    /// Those of one display, zoomed or not.
    std::vector<DisplayLayoutDivider> dividersOn(const std::string& displayID) const;
    /// The gap in which the divider lies, in screen space; absent when its display is gone.
    std::optional<CGRect> dividerFrameOnScreen(const DisplayLayoutDivider& divider) const;

    /// The managed window under a point of screen space.
    std::optional<std::string> managedWindowUnder(CGPoint pointOnScreen) const;
    /// The window's frame as it is now, in window-service space; absent when it cannot be read.
    std::optional<CGRect> currentFrame(const std::string& windowID) const;

    const UndoHistory& undoHistory() const { return undo_; }

  private:
    struct LearntPlace {
        std::string layoutID;
        std::string slotID;
    };
    struct StartingPoint {
        ManagedWindow window;
        std::string targetID;
        std::string displayID;
    };

    // Actions (WorkspaceActions.cpp)
    Outcome carryOut(const WorkspaceAction& action);
    void changeLater(const std::function<void()>& change);
    void showStatusMessage(const std::string& text);
    void setSetting(action::Setting setting, bool isOn);
    Outcome selectTheme(const std::string& id);
    void selectAccentColor(const std::string& id);
    void setPreferredApplication(const std::string& slotID, const std::optional<std::string>& applicationKey);

    // Refresh (WorkspaceRefresh.cpp)
    void applyPoll(PollResult result);
    void applyGrantedPoll(WindowEnumeration found, Seconds begun, bool isRecovering, bool justGranted);
    void presentPoll(bool isRecovering);
    void publishWindows();
    void followShownSpace();
    void giveOwedFrames();
    void applyDenied();
    void keepAssignmentsValid();
    void scheduleAutomaticArrangement(bool justGranted);
    bool hasUnfinishedBusiness() const;

    // Displays that come and go (WorkspaceDisplays.cpp)
    void readScreens();
    void screensChanged();
    bool isBesideFocusMode(const std::vector<Screen>& before) const;
    void keepFramesBesideFocusMode();
    void noteDisplaysThatCameAndWent(const std::set<std::string>& before);
    void displayHasNewID(const std::string& formerID, const std::string& newID);
    void settleOnDisplays();
    void presentRegained();
    void returnStrandedFloats();
    void migrateChangedDisplays();
    void migrateFromMissingTiles();
    void noteMovedByUser(const std::string& windowID);
    void displaysSettled();
    bool isAwaitedHome(const std::string& windowID) const;
    void placeHomelessWindows();
    void bringIntoSight();
    std::vector<std::string> placeHomelessFronts();
    std::vector<std::string> takeWaitingAlong();
    bool isZoomedOver(const WorkspaceTile& tile) const;
    void keepBesideFocusMode(const std::vector<std::string>& fronts, const std::vector<std::string>& waiting);
    TileAssignments assignmentsOnAbsentDisplays() const;
    void giveUpUnreachablePlacements();

    // What outlives the agent (WorkspaceRestart.cpp)
    void watchSession();
    std::optional<WorkspaceSession> describeSession();
    bool takeUpSession();
    std::set<std::string> takeUpResizedDisplays();
    void acceptPlacesOfWindows(const std::set<std::string>& returnedDisplayIDs);
    void putAwayAgain();
    bool hasComeBackToWait(const ManagedWindow& window, const std::optional<CGRect>& formerFrame) const;
    WorkspaceSessionWindow sessionWindow(const ManagedWindow& window, const std::map<std::string, CGSize>& minimums);
    void takeUpTiles(const WorkspaceSession& session, const ResumedWindows& resumed);
    std::set<std::string> takeUpDisplays(const WorkspaceSession& session);
    void expectReturns(const WorkspaceSession& session, const ResumedWindows& resumed);
    void takeUpZoom(const WorkspaceSessionZoom& zoom, const ResumedWindows& resumed);
    std::set<std::string> sparedWindowIDs();

    // Sleep, lock and session switches (WorkspaceRecovery.cpp)
    void beginTransitionRecovery();
    bool applyLockedSession(bool pollFoundLocked);
    void adoptSuccessors(const std::vector<WindowSuccessor>& successors);
    void renameWindow(const std::string& formerID, const std::string& id);
    void recoverAssignedWindows();
    bool isAway() const;
    bool mayMoveWindows() const;

    // Placement (WorkspacePlacement.cpp)
    struct Covering {
        std::vector<DisplayTileTarget> targets; // anchor first
    };
    std::optional<Covering> coveringFor(const ManagedWindow& window, const std::string& targetID) const;
    std::optional<Covering> coveringOn(const Screen& screen, const std::vector<std::string>& slotIDs) const;
    TileRoom roomOn(const Screen& screen) const;
    std::vector<std::string> takeTiles(const std::string& windowID, const Covering& covering);
    void place(const ManagedWindow& window, const Covering& covering, AccessibilityWindowService::BringToFront raise);
    enum class Focusing { no, yes };
    bool placeWindow(const std::string& windowID, const std::string& targetID, Focusing focusing);
    void announceClaim(const ManagedWindow& window, const Covering& covering);
    void presentDisplaced(const std::vector<std::string>& displacedWindowIDs);
    void writeFrame(const ManagedWindow& window, const CGRect& frameForWindowService,
                    AccessibilityWindowService::BringToFront raise);
    void moveDialogsAlong(const std::string& windowID, const CGRect& frameForWindowService);
    void minimizeWindow(const ManagedWindow& window);
    void hideApplicationOf(const ManagedWindow& window);
    void unhideApplicationOf(const ManagedWindow& window);
    void bringBack(const ManagedWindow& window);
    bool focus(const ManagedWindow& window);
    void requestPresentation(const std::string& windowID, WindowPresentation presentation);
    void minimumSizeObserved(const std::string& windowID, const CGRect& wanted, const CGRect& actual);
    void makeRoomFor(const ManagedWindow& window);
    using Straying = FrameKeeper::Straying;
    void reapplyTileFrames(Straying straying = Straying::noticeable);
    void reapplyWindow(const ManagedWindow& window, const CGRect& target, Straying straying);
    std::optional<LeftAlone> whyLeftAlone(const ManagedWindow& window) const;
    bool isLeftAlone(const ManagedWindow& window) const { return whyLeftAlone(window).has_value(); }
    CGSize minimumSizeOf(const ManagedWindow& window,
                         WindowSizes::Purpose purpose = WindowSizes::Purpose::present) const;
    std::optional<CGSize> minimumOfApplication(const ManagedWindow& window) const;
    void rememberMinimum(const ManagedWindow& window, std::optional<CGSize> minimum);
    CGRect restingFrame(const ManagedWindow& window, const CGRect& tileFrame) const;
    void publishAssignments();
    void commit(const Transaction& changes);
    void noteTilesMoved();

    // Commands for one window (WorkspaceWindowCommands.cpp)
    Outcome carryOut(const WindowCommand& command);
    Outcome repairPlacements();
    WindowCommandInput windowCommandInput() const;
    Outcome carryOut(const WindowPlan& plan);
    static const WindowStep* lastPlacement(const WindowPlan& plan);
    void placeByCommand(const ManagedWindow& window, const std::string& targetID,
                        AccessibilityWindowService::BringToFront bringToFront);
    void floatByCommand(const ManagedWindow& window);
    void keepFloatingValid();
    void noteFocus();

    // Stacks (WorkspaceStacks.cpp)
    void bringNextForward(const TileAssignments& before);
    bool bringForward(const Promotion& promotion);
    bool isOffScreen(const ManagedWindow& window) const;

    // Launching and quitting (WorkspaceLaunching.cpp, WorkspaceQuitting.cpp)
    Outcome launchApplication(const action::LaunchApplication& launch);
    Outcome quitApplication(const std::string& windowID);
    Outcome forceQuitApplication(const std::string& windowID);
    void forceQuitAllApplications();
    Outcome forceQuit(const std::vector<RunningApplication>& confirmed);
    void applicationLaunched(const std::string& tile, const std::string& identifier, const LaunchResult& result);
    void processPendingApplicationPlacements();
    const ManagedWindow* windowLaunchedFor(const PendingApplicationPlacement& placement) const;
    Outcome endApplicationOf(const std::string& windowID, const std::string& message,
                             const std::function<std::optional<std::string>(pid_t)>& end);

    // Scenes (WorkspaceScenes.cpp, WorkspaceSceneRestoration.cpp) and the document (WorkspaceDocument.cpp)
    Outcome captureScene(const std::optional<std::string>& name);
    Outcome activateScene(const Uuid& id);
    Outcome renameScene(const Uuid& id, const std::string& name);
    Outcome deleteScene(const Uuid& id);
    Outcome insertScene(WorkspaceScene scene, std::size_t index);
    Outcome importWorkspaceDocument(std::string_view data);
    std::optional<WorkspaceScene> sceneWithID(const Uuid& id) const;
    std::vector<CapturedPlacement> capturedPlacements() const;
    std::vector<ManagedWindow> windowsHere() const;
    std::vector<WorkspaceSceneDisplay> capturedDisplays() const;
    void applyLook(const WorkspaceScene& scene);
    std::size_t placeWindowsOf(const WorkspaceScene& scene);
    std::vector<std::string> targetsFor(const Screen& screen, const std::string& slotID,
                                        const std::optional<std::vector<std::string>>& claimedSlotIDs) const;
    void launchForScene(const std::vector<std::string>& bundleIDs);
    void launchedForScene(const LaunchableApplication& application, const LaunchResult& result);
    void noteStarted(const LaunchableApplication& application, const LaunchResult& result);
    void raiseRestored(const std::vector<std::string>& windowIDs);
    void carryOutRestored(const std::vector<RestoredPlacement>& placements);
    void processPendingScenePlacements();
    void endRestoration(std::size_t unavailable);
    void publishSceneReport(SceneReport::State state);
    WorkspaceProductDocument workspaceDocument() const;
    void saveWorkspaceDocument();
    [[nodiscard]] Outcome changeDocument(WorkspaceProductDocument next);
    std::optional<DecodingError> takeDocument(WorkspaceProductDocument next);

    // Rules (WorkspaceRules.cpp)
    Outcome addRuleForWindow(const action::AddRuleForWindow& wanted);
    Outcome addRule(WorkspaceRule rule);
    Outcome changeRule(const action::ChangeRule& change);
    Outcome deleteRule(const Uuid& id);
    Outcome moveRule(const Uuid& id, std::size_t index);
    using RuleEdit = std::function<void(std::vector<WorkspaceRule>&, std::vector<WorkspaceRule>::iterator)>;
    Outcome editRule(const Uuid& id, const RuleEdit& edit);
    void applyRules(const std::vector<ManagedWindow>& windows);
    void carryOutRules(const std::vector<std::pair<std::string, std::size_t>>& decisions);
    std::optional<RuleTile> tileOfRule(const ManagedWindow& window) const;
    void noteHasItsPlace(const std::string& windowID);
    bool isExcludedByRules(const ManagedWindow& window) const;
    Outcome appendRule(WorkspaceRule rule, const std::string& subject);

    // Dividers and hand-made moves (WorkspaceDividers.cpp, WorkspaceWindowDrag.cpp)
    Outcome beginDividerDrag(const DisplayLayoutDivider& target);
    void updateDividerDrag(const DisplayLayoutDivider& target, double translationPoints);
    void endDividerDrag(const DisplayLayoutDivider& target);
    void cancelDividerDrag();
    Outcome moveDivider(const DisplayLayoutDivider& target, double translationPoints);
    Outcome resetDivider(const DisplayLayoutDivider& target);
    void pressWindow(const std::string& windowID);
    void releaseWindow();
    Outcome beginWindowDrag(const std::string& windowID, const CGRect& frameBefore);
    void updateWindowDrag(CGPoint pointer, action::WindowDragKind kind);
    void endWindowDrag(CGPoint pointer, action::WindowDragKind kind, action::DropMode mode);
    void cancelWindowDrag();
    void applyDividerDrag();
    void writeInteractiveFrames(const std::string& displayID);
    void verifyFrames(const std::string& displayID, const std::map<std::string, CGRect>& written);
    void abandonDrags();
    void endDrags();
    void presentationResumed();
    void dropWindow(const ManagedWindow& window, CGPoint pointer, action::DropMode mode, WorkspaceUndoSnapshot before);
    void resizeTileLike(const ManagedWindow& window, const CGRect& frameBefore, WorkspaceUndoSnapshot before);
    std::optional<std::string> dropTarget(const std::string& windowID, CGPoint pointOnScreen) const;
    void storeWeights(const std::string& displayID, const std::string& layoutID, LayoutWeightOverrides weights);

    // Windows that refuse (WorkspaceReflow.cpp)
    Outcome forgetApplication(const std::string& name);
    void reflow(const std::string& windowID);
    void claimRoomWhereNeeded(const std::string& first = {});
    std::optional<std::pair<ManagedWindow, Covering>> nextClaimOn(const Screen& screen, const std::string& first,
                                                                  const std::set<std::string>& done) const;
    void moveOutOfTheWay(const Screen& screen, const std::pair<ManagedWindow, Covering>& claim);
    std::optional<Covering> freeCoveringOn(const Screen& screen, const ManagedWindow& window) const;
    void noteSizesSeen();
    void retryMinimum(const std::string& windowID);
    void publishMinimums() { state_.observedMinimumSizes.set(frames_.sizes().shown()); }
    void giveBackSpans();

    // Arrangement (WorkspaceArrangement.cpp)
    Outcome arrange();
    void arrangeWindows();
    bool hasWindowToArrange() const;
    ArrangementInput arrangementInput(const std::vector<ManagedWindow>& windows,
                                      const TileAssignments& assignments) const;
    std::optional<ArrangementCandidate> candidateFor(const ManagedWindow& window,
                                                     const TileAssignments& assignments) const;
    void carryOut(const ArrangementPlan& plan);
    void presentPlacement(const AutoArrangePlacement& placement, const std::map<std::string, CGRect>& frames);
    void carryOutDeferredPlacement(const AutoArrangePlacement& placement);
    void carryOutDeferred(std::vector<AutoArrangePlacement> deferred, std::int64_t generation);
    void learnFrom(const ArrangementPlan& plan);
    void learnPlacementByUser(const ManagedWindow& window, const std::string& targetID);
    std::optional<LearntPlace> learntPlace(const std::string& targetID) const;

    // Layouts (WorkspaceLayouts.cpp)
    const Screen* screenOf(const std::string& displayID) const;
    const Screen* screenOfTarget(const std::string& targetID) const;
    const Screen* screenOfWindow(const ManagedWindow& window) const;
    double firstScreenMaxY() const;
    bool isOnSomeScreen(const CGRect& frameForWindowService) const;
    const SolvedLayout& solvedTiles(const Screen& screen) const;
    TileMinimumSizes tileMinimumSizes(const std::string& displayID) const;
    std::optional<CGRect> tileFrameOnScreen(const std::string& targetID) const;
    /// Where the window belongs by its tiles, in window-service space.
    std::optional<CGRect> frameForWindow(const std::string& windowID) const;
    /// The same of every window that fronts a tile, by window id.
    std::map<std::string, CGRect> framesOfTiledWindows() const;
    std::map<std::string, CGRect> framesOfTiledWindows(const Screen& screen) const;
    Outcome cycleLayout(LayoutStep direction);
    Outcome selectLayout(const std::string& displayID, const DisplayLayoutSelection& selection);
    Outcome resetLayoutSizes(const std::optional<std::string>& displayID);
    Outcome setTileInset(double points);
    void noteTileGeometry();
    void layoutChanged(const std::string& displayID);
    void setProfile(WorkspaceProfile profile);

    // Undo and focus mode (WorkspaceUndo.cpp)
    Outcome undoLastAction();
    Outcome toggleFocusMode(const std::optional<std::string>& windowID);
    WorkspaceUndoSnapshot captureUndoSnapshot() const;
    void pushUndoSnapshot(UndoLabel label, std::optional<WorkspaceUndoSnapshot> snapshot = std::nullopt);
    /// Applications of the windows in the display's tiles, each once; of all live windows when none is named.
    std::vector<std::string> applicationsOn(const std::optional<std::string>& displayID) const;
    void restoreUndoSnapshot(const WorkspaceUndoSnapshot& snapshot);
    void restoreWindow(ManagedWindow& window, const WorkspaceUndoSnapshot& snapshot);
    void hideAsIn(const WorkspaceUndoSnapshot& snapshot);
    /// The live windows as they will be once the snapshot is restored.
    std::vector<ManagedWindow> windowsAsIn(const WorkspaceUndoSnapshot& snapshot) const;
    void restoreActiveScene(const std::optional<Uuid>& id);
    void closeFocusMode();
    bool leaveFocusMode();
    Outcome enterFocusMode(const std::optional<std::string>& windowID);
    std::optional<StartingPoint> zoomStartingPoint(const std::optional<std::string>& windowID) const;
    /// A zoomed window's, in window-service space; absent when the display is gone.
    std::optional<CGRect> zoomFrame(const std::string& displayID) const;

    // Navigation (WorkspaceNavigation.cpp)
    Outcome moveWindow(WorkspaceDirection direction, const std::optional<std::string>& windowID);
    Outcome focusWindow(WorkspaceDirection direction, const std::optional<std::string>& fromWindowID);
    Outcome cycleStack(const action::CycleStack& cycle);
    std::optional<std::string> focusedWindowID() const;
    std::optional<StartingPoint> startingPoint(const std::optional<std::string>& windowID) const;
    struct StackTurn {
        std::string targetID;
        std::vector<std::string> order; // as it is to be, front first
    };
    std::optional<StackTurn> stackTurn(const action::CycleStack& cycle) const;
    enum class TilesConsidered { all, occupied };
    std::optional<std::string> neighbourOf(const StartingPoint& start, WorkspaceDirection direction,
                                           TilesConsidered considered) const;

    ManagedWindow* findLive(const std::string& windowID) { return liveWindows_.find(windowID); }
    const ManagedWindow* findLive(const std::string& windowID) const { return liveWindows_.find(windowID); }
    Outcome requireWindowAccess();
    Outcome requireVisibleScreen();
    std::optional<std::string> whyNothingIsSeen() const;
    Outcome done(const std::string& message);
    Outcome refuse(const std::string& reason);
    Outcome refuseSilently(std::string reason) const;

    /// Every object that knows windows or displays by their ids, or that waits for time to pass.
    template <class Self>
    static auto partsOf(Self& self) {
        return std::tie(self.assignments_, self.tileMemory_, self.liveWindows_, self.displays_, self.undo_,
                        self.focusMode_, self.pointer_, self.frames_, self.session_, self.awaited_, self.arranger_,
                        self.recovery_);
    }

    WorkspaceServices services_;
    std::shared_ptr<AccessibilityWindowService> windowService_;
    ThemeRegistry registry_;
    WorkspaceState state_;
    LiveWindows liveWindows_;
    TileAssignments assignments_;
    TileMemory tileMemory_;
    mutable DisplayLayouts layouts_;
    DisplayMemory displays_;
    UndoHistory undo_;
    FocusMode focusMode_{state_.focusMode};
    PointerInteraction pointer_;
    FrameKeeper frames_;
    TransitionRecovery recovery_;
    SessionRestore session_;
    AwaitedWindows awaited_{state_.pendingLaunches};
    Arranger arranger_;
    std::uint64_t statusMessageSerial_ = 0;
    std::vector<Subscription> subscriptions_;
    RefreshCycle refreshCycle_;
    Lifetime lifetime_;
};

} // namespace kova
