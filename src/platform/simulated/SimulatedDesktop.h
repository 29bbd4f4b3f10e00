// A whole desktop in memory, in virtual time: a back end like any other, used by every scenario test. With the upper
// half of the class, tests act as users, applications and the machine; the lower half implements the platform
// interfaces for KOVA. The desktop records the requests of KOVA; a call that violates a platform interface (a write
// from the polling queue, a frame that is not a number) is added to `violations`.
#pragma once

#include "platform/simulated/SimulatedAnnouncements.h"
#include "platform/simulated/SimulatedKeyboard.h"
#include "platform/simulated/SimulatedTraits.h"
#include "platform/simulated/SimulatedWindow.h"
#include "platform/simulated/VirtualTime.h"
#include "support/Identifiers.h"
#include "support/Lifetime.h"
#include "windowing/AccessibilityServicing.h"
#include "windowing/AlertServicing.h"
#include "windowing/ApplicationServicing.h"
#include "windowing/DiagnosticsServicing.h"
#include "windowing/PointerServicing.h"
#include "windowing/ScreenServicing.h"
#include "windowing/SystemActivityServicing.h"

#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kova {

class SimulatedDesktop : public AccessibilityServicing,
                         public ApplicationServicing,
                         public ScreenServicing,
                         public SessionServicing,
                         public SystemActivityServicing,
                         public AlertServicing,
                         public DesktopChangeServicing,
                         public DiagnosticsServicing,
                         public PointerMonitorServicing,
                         public DividerHandleServicing {
  public:
    static constexpr pid_t kOwnProcessIdentifier = 4242;
    static constexpr Seconds kReadDeadline{0.25};
    static constexpr Seconds kDoubleClickTime{0.4};

    SimulatedDesktop();

    /// Sets the styles of Spaces, announcements and responses together; each may be changed afterwards.
    void setStyle(DesktopStyle style);
    VirtualMainQueue& queue() { return queue_; }
    VirtualWorkQueue& pollingQueue() { return pollingQueue_; }
    SimulatedKeyboard& keyboard() { return keyboard_; }

    // Displays. Windows that a change leaves on no display are moved onto the first, unless they are stranded.
    void addDisplay(SimulatedDisplay display);
    void removeDisplay(std::string_view name);
    void resizeDisplay(std::string_view name, CGSize size);
    void renameDisplay(std::string_view name, std::string newName);
    void setPanels(std::string_view name, CGRect panels);
    void makeFirstDisplay(std::string_view name);
    CGRect frameOfDisplay(std::string_view name) const; // desktop space
    void strandWindows(bool strand) { strandsWindows_ = strand; }

    // Applications. Unknown names and labels throw std::out_of_range, since the scenario has a mistake.
    pid_t launch(std::string name, ApplicationTraits traits = {});
    void quit(std::string_view application);
    /// The application stays listed, but as terminated.
    void beginTerminating(std::string_view application);
    void userHides(std::string_view application, bool hide = true);
    /// The application begins or stops to respond. While it does not respond, a request takes until the deadline, and
    /// writes are lost.
    void setAnswering(std::string_view application, bool responds);
    bool isAnswering(const SimulatedWindow& window) const;
    bool isSilent(pid_t processIdentifier) const;
    // How a Mac responds (SimulatedAnnouncements.cpp)
    /// Sets the time that each request of a poll takes. From `kReadDeadline` on there is no response.
    void setAnswerTime(Seconds time);
    /// While the permission is stale, every request is refused although KOVA has the permission.
    void setPermissionStale(bool isStale);
    SimulatedAnnouncements& announcements() { return announcements_; }
    /// The application animates its windows while its enhanced user interface is on.
    void setEnhancedUserInterface(std::string_view application, bool isOn);
    bool hasEnhancedUserInterface(std::string_view application) const;
    /// At the next activation of another application, this application takes the focus back.
    void stealNextActivation(std::string_view application);
    /// From now on the desktop places windows itself, so that writes of frames are lost. `name` is the name that
    /// `placingManager` returns.
    void placeWindowsItself(std::optional<std::string> name) {
        placesWindows_ = true;
        placingManager_ = std::move(name);
    }
    bool placesWindows() const { return placesWindows_; }
    void setHidingStyle(HidingStyle style) { hidingStyle_ = style; }
    pid_t processIdentifier(std::string_view application) const;
    bool isRunning(std::string_view application) const;
    /// Makes an application known to launchers.
    LaunchableApplication install(std::string name, InstallationTraits traits = {});
    void uninstall(std::string_view name);
    void setQuittingHabit(std::string_view application, QuittingHabit habit);

    // Alerts
    /// The alerts shown since the last call, in their order.
    std::vector<Alert> takeAlerts() { return std::exchange(alerts_, {}); }
    /// From now on alerts are shown by `alerts` instead, which must exist as long as KOVA shows alerts.
    void showAlertsBy(AlertServicing& alerts) { alternativeAlerts_ = &alerts; }
    /// Answers the oldest open alert as a user does.
    void answerAlert(bool isConfirmed);

    // Windows. A label is the application's name, with a number for every further window: "Mail", "Mail 2".
    std::string open(std::string_view application, WindowTraits traits = {});
    void close(std::string_view label);
    void userMoves(std::string_view label, const CGRect& frameOnDesktop);
    void userMinimizes(std::string_view label, bool minimize = true);
    void userFocuses(std::string_view label);
    void setTitle(std::string_view label, std::string title);
    void setMinimumSize(std::string_view label, CGSize size);
    /// For the duration windows keep their sizes, and their sizes are unreliable until two seconds later.
    void replaceWindowManager(Seconds duration) { managerComesAt_ = queue_.uptime() + duration; }
    /// For the duration windows keep their sizes although the sizes count as reliable.
    void stallResizing(Seconds duration) { stalledUntil_ = queue_.uptime() + duration; }
    // Spaces and native tabs (SimulatedSpaces.cpp)
    void setSpaceStyle(SpaceStyle style) { spaceStyle_ = style; }
    void setFullScreen(std::string_view label, bool fullScreen);
    void setMaximized(std::string_view label, bool maximized);
    void sendToVirtualDesktop(std::string_view label, int virtualDesktop);
    void showVirtualDesktop(int virtualDesktop);
    int shownVirtualDesktop() const { return virtualDesktop_; }
    /// With `SpaceStyle::listsShown`: the delay after which `shownSpace` reports that another Space is shown.
    void delaySpaceNotifications(Seconds delay) { spaceNotificationDelay_ = delay; }
    /// Closes a window, but its application keeps the window's object, which still responds: with an empty size, or
    /// with the frame that the window had.
    enum class RetainedFrame { empty, asItWas };
    void closeAndRetain(std::string_view label, RetainedFrame frame);
    bool isRetained(const WindowID& windowID) const;
    /// Opens one more tab in the window's tab group and shows it. Only the shown tab is listed. A tab gets a new
    /// element each time it is shown; the elements of the other tabs still respond.
    std::string openTab(std::string_view label, WindowTraits traits = {});
    void showTab(std::string_view label);
    /// The window server reports an open window as destroyed or, if `lose` is false, as present again. Both happen
    /// around sleep.
    void loseWindow(std::string_view label, bool lose = true);
    /// The window gets another identifier.
    void renumber(std::string_view label);
    const SimulatedWindow& window(std::string_view label) const;
    std::vector<const SimulatedWindow*> livingWindows() const; // in the order in which they were opened

    // Session, permission, pointer
    /// Locks the session without a notification; queries report the lock.
    void setLocked(bool locked);
    /// A change of the machine or the login session, delivered on the queue.
    void simulate(SystemActivityEvent event);
    void setTrusted(bool trusted);
    /// From now on no window of the session can be managed, for this reason.
    void setAbsence(std::string reason);
    void setAnswerToPrompt(bool trusted) { answerToPrompt_ = trusted; }
    int promptCount() const { return promptCount_; }
    void movePointer(std::optional<CGPoint> pointOnDesktop);
    /// Whether the desktop announces every change.
    void setAnnouncesAllChanges(bool announcesAll);

    // The mouse (SimulatedMouse.cpp); its events are delivered on the queue. Points are in desktop space.
    /// Presses the main button: on the window at the point, else on the handle there.
    void pressAt(CGPoint point, WindowPart grip = WindowPart::titleBar);
    /// Moves the pointer; the dragged window or handle follows.
    void movePointer(CGPoint point, ShiftKey shift = ShiftKey::up);
    void releaseButton(ShiftKey shift = ShiftKey::up);
    /// Ends the drag of a handle.
    void pressEscape();
    /// Until `reportPress`, only handles get events of the button and the pointer, like on a desktop whose answer where
    /// a press was comes late.
    void delayPressReport() { delaysPressReport_ = true; }
    /// Reports the press with the pointer's position by now.
    void reportPress();
    void coverDesktopIcons() { coversDesktopIcons_ = true; }
    /// The handles shown now.
    const std::vector<DividerHandle>& handles() const { return handles_; }
    const std::vector<CGRect>& guardedAreas() const { return guardedAreas_; }

    // The state of the desktop
    /// "Mail 15,15 1908x1382 | Notes 1947,15 598x1382 minimized", frames in window-service space.
    std::string picture() const;
    /// The state of one window, as in the picture.
    std::string describeWindow(const SimulatedWindow& window) const;
    /// Label of the window that has the keyboard focus; empty if no window has it.
    std::string focusedLabel() const;
    /// The label of a window by its id; the id itself when there is no such window.
    std::string labelOfID(const WindowID& windowID) const;
    WindowID windowIDOf(std::string_view label) const;
    CGRect frameForWindowService(const SimulatedWindow& window) const;
    bool isOnScreen(const SimulatedWindow& window) const;
    /// Whether any part of the window lies on a display.
    bool isOnSomeDisplay(const SimulatedWindow& window) const;
    bool isHidden(std::string_view application) const;
    /// The requests of KOVA since the last call, one per line: "Mail: AXPosition 15,15, AXSize 600x400".
    std::string takeJournal();
    /// The number of requests to read attributes since the start.
    int readCount() const { return readCount_; }
    const std::vector<std::string>& violations() const { return violations_; }
    /// The number of windows since the start that the user or their application has closed.
    int closedCount() const { return closedCount_; }
    int openedCount() const { return openedCount_; }

    // AccessibilityServicing
    std::optional<WindowSizeHints> sizeHints(const AccessibilityElement& element) const override;
    bool areSizesReliable(const AccessibilityElement&) const override;
    bool isProcessTrusted() const override { return isTrusted_; }
    bool requestTrust(bool prompt) override;
    std::optional<std::string> unavailableReason() const override { return absence_; }
    std::optional<std::string> stalePermission() const override;
    bool readsSendRequests() const override { return style_ == DesktopStyle::mac; }
    AccessibilityElement applicationElement(pid_t processIdentifier) const override;
    std::vector<AttributeValue> readAttributes(const AccessibilityElement& element,
                                               std::span<const AccessibilityAttribute> attributes) const override;
    WindowPresence presenceOf(const AccessibilityElement& window) const override;
    std::optional<std::uint64_t> spaceOf(const AccessibilityElement& window) const override;
    std::uint64_t shownSpace() const override;
    void writeAttributes(const AccessibilityElement& element, std::span<const AttributeWrite> writes) override;
    void performAction(const AccessibilityElement& element, AccessibilityAction action) override;
    std::optional<AccessibilityElement> elementAtPosition(CGPoint point) const override;
    std::vector<OnScreenWindow> onScreenWindows() const override;
    std::optional<std::string> placingManager() const override { return placingManager_; }
    void flush() override;
    // ApplicationServicing
    pid_t ownProcessIdentifier() const override { return kOwnProcessIdentifier; }
    std::vector<RunningApplication> runningApplications() const override;
    std::optional<RunningApplication> runningApplication(pid_t processIdentifier) const override;
    std::optional<pid_t> frontmostApplication() const override { return frontmost_; }
    ApplicationIcon iconForFile(const std::string& path) const override;
    ApplicationIcon systemSymbolIcon(const std::string& name) const override;
    void hide(pid_t processIdentifier) override;
    void unhide(pid_t processIdentifier) override;
    std::optional<std::string> processStartIdentity(pid_t processIdentifier) const override;
    bool hasLaunchedProcessSucceeded(pid_t processIdentifier) const override;
    void activate(pid_t processIdentifier) override;
    std::vector<LaunchableApplication> launchableApplications() const override;
    std::optional<LaunchableApplication> launchableApplication(const BundleID& bundleIdentifier) const override;
    void launch(const LaunchableApplication& application, LaunchActivation activation,
                LaunchCompletion completion) override;
    bool terminate(pid_t processIdentifier) override;
    std::optional<std::string> forceTerminate(pid_t processIdentifier) override;
    // AlertServicing
    void inform(const Alert& alert) override;
    void confirm(const Alert& alert, std::function<void(bool)> answer) override;
    // ScreenServicing, SessionServicing and SystemActivityServicing
    std::vector<Screen> screens() const override;
    Subscription observeScreens(std::function<void()> changed) override;
    std::optional<CGPoint> pointerLocation() const override;
    bool isLoginSessionScreenLocked() const override { return isLocked_; }
    Subscription observeSystemActivity(std::function<void(SystemActivityEvent)> observer) override;
    // DesktopChangeServicing and DiagnosticsServicing
    std::optional<std::uint64_t> changeCount() const override;
    void notifyWhenChanged(std::uint64_t count, std::function<void()> callback) override;
    bool announcesWithoutRequest() const override { return announcements_.style() == AnnouncementStyle::always; }
    AnnouncementAnswer requestAnnouncements(const AccessibilityElement& element) override;
    void endAnnouncements(const AccessibilityElement& element) override { announcements_.end(element); }
    std::optional<Seconds> longestIdleTime() const override;
    std::vector<DiagnosticLine> diagnose() const override;
    // PointerMonitorServicing and DividerHandleServicing
    Subscription observePointer(std::function<void(const PointerEvent&)> observer) override;
    bool dragsWindowsByAnyPoint() const override { return style_ != DesktopStyle::mac; }
    void showHandles(const std::vector<DividerHandle>& handles) override;
    bool coversDesktopIcons() const override { return coversDesktopIcons_; }
    void guardDesktop(const std::vector<CGRect>& areas) override { guardedAreas_ = areas; }
    Subscription observeHandles(std::function<void(const DividerHandleEvent&)> observer) override;

  private:
    // A window's own number, and those of the elements inside it.
    static constexpr std::uint64_t kNumbersPerWindow = 16;

    struct Application {
        RunningApplication record;
        std::string name;
        bool listsWindowsTwice = false;
        bool lingersWhenHidden = false;
        bool isVerified = true;
        bool responds = true;
        bool isEnhanced = false;
        QuittingHabit quittingHabit = QuittingHabit::quits;
        std::uint64_t focusedWindow = 0;
    };
    struct Installation {
        LaunchableApplication application;
        InstallationTraits traits;
    };

    Application& application(std::string_view name);
    const Application& application(std::string_view name) const;
    Application* findApplication(pid_t processIdentifier);
    const Application* findApplication(pid_t processIdentifier) const;
    SimulatedWindow& mutableWindow(std::string_view label);
    SimulatedWindow* findWindow(std::uint64_t number);
    const SimulatedWindow* findWindow(std::uint64_t number) const;
    const SimulatedWindow* windowOf(const AccessibilityElement& element) const;
    AccessibilityElement elementOf(const SimulatedWindow& window) const;
    const SimulatedDisplay& display(std::string_view name) const;
    SimulatedDisplay& display(std::string_view name);
    const Installation* findInstallation(const std::string& identifier) const;
    void startInstalled(const Installation& installation, LaunchActivation activation);
    pid_t startForking(const Installation& installation, LaunchActivation activation);
    void openLater(pid_t processIdentifier, const WindowTraits& traits, Seconds delay, LaunchActivation activation);
    void end(pid_t processIdentifier);
    std::string freeLabel(const std::string& applicationName) const;

    CGRect displayFrame(const SimulatedDisplay& display) const;
    /// The display under the window's top left corner, else the first.
    CGRect displayFrameUnder(const CGRect& frame) const;
    CGPoint firstDisplayOrigin() const;
    bool isOnSomeDisplay(const CGRect& frame) const;
    void displaysChanged();
    CGPoint onScreen(CGPoint pointOnDesktop) const;

    // The object that is dragged while the button is down.
    struct Hold {
        std::uint64_t window = 0;
        WindowPart grip = WindowPart::nothing;
        CGRect frame{}; // of the window, when the button went down
        CGPoint start{};
        std::optional<std::string> handleID{};
        bool isOver = false; // the press was the second of a double click, or Escape ended the drag
    };
    struct Click {
        std::string handleID;
        Seconds when{};
    };
    const DividerHandle* handleAt(CGPoint pointOnDesktop) const;
    void postEvent(PointerEvent::Kind kind, CGPoint pointOnDesktop, ShiftKey shift = ShiftKey::up);
    void postEvent(DividerHandleEvent::Kind kind, const std::string& handleID, CGPoint pointOnDesktop);

    void changed(); // a change that the system itself announces: of applications, Spaces, displays or the session
    void changed(const SimulatedWindow& window);
    void changed(const Application& application); // its windows changed, or which of them has its focus
    void announce();
    void announceLater();
    void announceChange();
    /// Whether the application responds. A poll spends the time of the response, or the time until the deadline.
    bool waitForResponse(const Application& application) const;
    bool isInTime(const Application& application) const;
    void note(std::string line);
    void requireMainThread(const char* call) const;
    void remove(const SimulatedWindow& window);
    void setFrameOf(SimulatedWindow& window, const CGRect& frame);
    /// The window to which the dialog `window` belongs; null for other windows.
    const SimulatedWindow* parentOf(const SimulatedWindow& window) const;
    /// A window, its dialogs and their dialogs are hidden and shown together, whichever of them gets the request.
    std::vector<SimulatedWindow*> familyOf(const SimulatedWindow& window);
    void setMinimized(SimulatedWindow& window, bool minimized);
    void setMinimizedAlone(SimulatedWindow& window, bool minimized);
    void setMinimizedByRequest(SimulatedWindow& window, bool minimized);
    /// Whether the window was minimized by a request of its own, not hidden together with its application.
    bool isMinimizedByItself(const SimulatedWindow& window) const;
    void setHidden(Application& application, bool hidden);
    void iconifyWindows(Application& application, bool iconify);
    void apply(std::uint64_t windowNumber, const std::vector<AttributeWrite>& writes);
    void apply(SimulatedWindow& window, const AttributeWrite& write);
    void springBackLater(const SimulatedWindow& window, const CGRect& frame);
    void raise(const SimulatedWindow& window);
    void renumber(SimulatedWindow& window);
    void showNextTabOf(const SimulatedWindow& closing);
    bool isOnShownSpace(const SimulatedWindow& window) const;
    bool isListed(const SimulatedWindow& window) const;
    void enterOwnSpace(SimulatedWindow& window);
    void leaveOwnSpace(SimulatedWindow& window);
    void focusNextApplication();
    const SimulatedWindow* focusedWindow(const Application& application) const;
    AttributeValue value(const SimulatedWindow& window, AccessibilityAttribute attribute) const;
    AttributeValue value(const Application& application, AccessibilityAttribute attribute) const;
    AttributeValue valueInside(const SimulatedWindow& window, std::uint64_t depth,
                               AccessibilityAttribute attribute) const;

    mutable VirtualMainQueue queue_;
    mutable VirtualWorkQueue pollingQueue_{queue_};
    SimulatedKeyboard keyboard_{queue_};
    std::vector<SimulatedDisplay> displays_; // the platform's order
    std::deque<Application> applications_;   // the order of launching
    std::vector<Installation> installations_;
    std::map<pid_t, bool> forkingPrograms_; // by their process: whether they have ended
    std::vector<Alert> alerts_;
    AlertServicing* alternativeAlerts_ = nullptr;
    std::deque<std::function<void(bool)>> pendingConfirmations_;
    std::map<std::uint64_t, SimulatedWindow> windows_;
    std::vector<std::uint64_t> stacking_; // front to back
    std::optional<pid_t> frontmost_;
    std::optional<pid_t> activationThief_; // of `stealNextActivation`
    HidingStyle hidingStyle_ = HidingStyle::hidesApplication;
    bool placesWindows_ = false;
    std::optional<std::string> placingManager_;
    DesktopStyle style_ = DesktopStyle::knowsItsWindows;
    SimulatedAnnouncements announcements_;
    Seconds answerTime_{0};
    bool isPermissionStale_ = false;
    SpaceStyle spaceStyle_ = SpaceStyle::listsAll;
    int virtualDesktop_ = 0;
    int lastOwnSpace_ = 1000; // the last Space made for a full-screen window; higher numbers than scenarios use
    std::uint64_t spaceChanges_ = 0;
    Seconds spaceNotificationDelay_{0};
    std::map<std::uint64_t, SimulatedWindow> retained_; // closed, but still responding
    bool strandsWindows_ = false;
    bool isTrusted_ = true;
    std::optional<std::string> absence_;
    bool answerToPrompt_ = false;
    bool isLocked_ = false;
    std::optional<Seconds> managerComesAt_; // uptime
    Seconds stalledUntil_{0};
    bool announcesAllChanges_ = true;
    std::optional<CGPoint> pointerOnDesktop_;
    pid_t lastProcessIdentifier_ = 100;
    std::uint64_t lastWindowNumber_ = 0;
    std::uint64_t changeCount_ = 1;
    std::function<void()> changeCallback_;
    std::uint64_t changeRequest_ = 0; // the newest call of notifyWhenChanged
    Observers<> screenObservers_;
    Observers<SystemActivityEvent> systemActivityObservers_;
    Observers<const PointerEvent&> pointerObservers_;
    Observers<const DividerHandleEvent&> handleObservers_;
    std::vector<DividerHandle> handles_;
    std::vector<CGRect> guardedAreas_;
    bool delaysPressReport_ = false;
    bool coversDesktopIcons_ = false;
    std::optional<Hold> hold_;
    std::optional<Click> lastClick_;
    std::vector<std::string> journal_;
    mutable std::vector<std::string> violations_;
    mutable int readCount_ = 0;
    int promptCount_ = 0;
    int openedCount_ = 0;
    int closedCount_ = 0;
    Lifetime lifetime_;
};

} // namespace kova
