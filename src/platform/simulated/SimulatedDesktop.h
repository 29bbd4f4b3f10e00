// A back end that simulates a whole desktop in memory and in virtual time. Every scenario test uses it. Tests call the
// first half of the class to act as the user, the applications and the machine. The second half implements the platform
// interfaces, which KOVA calls. The desktop records the requests of KOVA. A call that violates a platform interface (a
// write from the polling queue, a frame that is not a number) is added to `violations`.
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
    static constexpr Seconds kSettlingTime{2}; // after a new window manager has started

    SimulatedDesktop();

    /// Sets the styles of Spaces, announcements and responses together; each may be changed afterwards.
    void setStyle(DesktopStyle style);
    VirtualMainQueue& queue() { return queue_; }
    VirtualWorkQueue& pollingQueue() { return pollingQueue_; }
    const VirtualWorkQueue& pollingQueue() const { return pollingQueue_; }
    SimulatedKeyboard& keyboard() { return keyboard_; }

    // Displays. If a change of displays leaves a window on no display, the window is moved onto the first display;
    // after `strandWindows(true)` it stays where it is.
    void addDisplay(SimulatedDisplay display);
    void removeDisplay(std::string_view name);
    void resizeDisplay(std::string_view name, CGSize size);
    void renameDisplay(std::string_view name, std::string newName);
    void setPanels(std::string_view name, CGRect panels);
    void makeFirstDisplay(std::string_view name);
    CGRect frameOfDisplay(std::string_view name) const; // desktop space
    void strandWindows(bool strand) { strandsWindows_ = strand; }

    // Applications. An unknown name or label is a mistake in the scenario; the functions throw std::out_of_range.
    pid_t launch(std::string name, ApplicationTraits traits = {});
    void quit(std::string_view application);
    /// Marks the application as terminated; it stays listed.
    void beginTerminating(std::string_view application);
    void userHides(std::string_view application, bool hide = true);
    /// Sets whether the application responds. While it does not respond, each request of a poll takes `kReadDeadline`,
    /// and writes are lost.
    void setResponding(std::string_view application, bool responds);
    bool isResponding(const SimulatedWindow& window) const;
    /// Whether the process is a running application that does not respond in time.
    bool isUnresponsive(pid_t processIdentifier) const;
    // Traits of a Mac (SimulatedAnnouncements.cpp)
    /// Sets the time that each request of a poll takes. If it is `kReadDeadline` or more, no application responds in
    /// time.
    void setResponseTime(Seconds time);
    /// While the permission is stale, every request is refused although KOVA has the permission.
    void setPermissionStale(bool isStale);
    SimulatedAnnouncements& announcements() { return announcements_; }
    /// Sets an attribute of the application. While it is on, applications on a Mac animate the frames that are written.
    void setEnhancedUserInterface(std::string_view application, bool isOn);
    bool hasEnhancedUserInterface(std::string_view application) const;
    /// At the next activation of another application, this application takes the focus back.
    void stealNextActivation(std::string_view application);
    /// From now on the desktop places windows itself and ignores writes of frames. `placingManager` returns `name`.
    void placeWindowsItself(std::optional<std::string> name) {
        placesWindows_ = true;
        placingManager_ = std::move(name);
    }
    bool placesWindows() const { return placesWindows_; }
    void setHidingStyle(HidingStyle style) { hidingStyle_ = style; }
    pid_t processIdentifier(std::string_view application) const;
    bool isRunning(std::string_view application) const;
    /// Installs an application, so that KOVA can launch it.
    LaunchableApplication install(std::string name, InstallationTraits traits = {});
    void uninstall(std::string_view name);
    void setQuittingHabit(std::string_view application, QuittingHabit habit);

    // Alerts
    /// The alerts shown since the last call, in their order.
    std::vector<Alert> takeAlerts() { return std::exchange(alerts_, {}); }
    /// From now on alerts are shown by `alerts` instead, which must exist as long as KOVA shows alerts.
    void showAlertsBy(AlertServicing& alerts) { alternativeAlerts_ = &alerts; }
    /// Acts as the user who confirms or declines the oldest open confirmation.
    void answerAlert(bool isConfirmed);

    // Windows. A label is the application's name, with a number for every further window: "Mail", "Mail 2".
    std::string open(std::string_view application, WindowTraits traits = {});
    void close(std::string_view label);
    void userMoves(std::string_view label, const CGRect& frameOnDesktop);
    void userMinimizes(std::string_view label, bool minimize = true);
    void userFocuses(std::string_view label);
    void setTitle(std::string_view label, std::string title);
    void setMinimumSize(std::string_view label, CGSize size);
    /// Simulates the replacement of the window manager. For `duration`, windows ignore requests for a size. From now
    /// until two seconds after that, `areSizesReliable` is false. Then `windowManagerChanges` has changed, and windows
    /// that were minimized or hidden are shown.
    void replaceWindowManager(Seconds duration);
    /// For `duration`, windows ignore requests for a size, although `areSizesReliable` is true.
    void stallResizing(Seconds duration) { stalledUntil_ = queue_.uptime() + duration; }
    // Spaces and native tabs (SimulatedSpaces.cpp)
    void setSpaceStyle(SpaceStyle style) { spaceStyle_ = style; }
    void setFullScreen(std::string_view label, bool fullScreen);
    void setMaximized(std::string_view label, bool maximized);
    void sendToVirtualDesktop(std::string_view label, int virtualDesktop);
    void showVirtualDesktop(int virtualDesktop);
    int shownVirtualDesktop() const { return virtualDesktop_; }
    /// Sets the delay after which `shownSpace` reports that another Space is shown, with `SpaceStyle::listsShown`.
    void delaySpaceNotifications(Seconds delay) { spaceNotificationDelay_ = delay; }
    /// Closes a window whose application keeps the window's object. The object still responds, with an empty size or
    /// with the last frame of the window.
    enum class RetainedFrame { empty, asItWas };
    void closeAndRetain(std::string_view label, RetainedFrame frame);
    bool isRetained(const WindowID& windowID) const;
    /// Opens one more tab in the window's tab group and shows that tab. Only the shown tab is listed. A tab gets a new
    /// element each time it is shown. The elements of the other tabs still respond.
    std::string openTab(std::string_view label, WindowTraits traits = {});
    void showTab(std::string_view label);
    /// From now on the window server reports an open window as closed or, if `lose` is false, as present again. On real
    /// desktops both happen around sleep.
    void loseWindow(std::string_view label, bool lose = true);
    /// The window gets another identifier.
    void renumber(std::string_view label);
    const SimulatedWindow& window(std::string_view label) const;
    std::vector<const SimulatedWindow*> livingWindows() const; // in the order in which they were opened

    // Session, permission, pointer
    /// Locks or unlocks the session without a `SystemActivityEvent`; queries report the new state.
    void setLocked(bool locked);
    /// Simulates a change of the machine or the login session. The event is delivered on the queue.
    void simulate(SystemActivityEvent event);
    void setTrusted(bool trusted);
    /// From now on no window of the session can be managed, for this reason.
    void setUnavailableReason(std::string reason);
    /// Sets whether the user grants the permission when `requestTrust` shows a prompt.
    void setAnswerToPrompt(bool trusted) { answerToPrompt_ = trusted; }
    int promptCount() const { return promptCount_; }
    /// Moves the pointer without an event; absent: the pointer has no known location.
    void movePointer(std::optional<CGPoint> pointOnDesktop);
    /// Sets whether the desktop announces every change, so that it has a `changeCount`.
    void setAnnouncesAllChanges(bool announcesAll);

    // The mouse (SimulatedMouse.cpp). Its events are delivered on the queue. Points are in desktop space.
    /// Presses the main button on the window at the point. If there is no window, presses the handle at the point.
    void pressAt(CGPoint point, WindowPart grip = WindowPart::titleBar);
    /// Moves the pointer; the dragged window or handle follows.
    void movePointer(CGPoint point, ShiftKey shift = ShiftKey::up);
    void releaseButton(ShiftKey shift = ShiftKey::up);
    /// Presses Escape, which ends the drag of a handle.
    void pressEscape();
    /// From now on until `reportPress`, the observers of the pointer get no events; the observers of handles still do.
    /// Some desktops also report late where the button was pressed.
    void delayPressReport() { delaysPressReport_ = true; }
    /// Reports the delayed press with the pointer's present position.
    void reportPress();
    /// From now on `coversDesktopIcons` is true.
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
    /// The number of read requests of KOVA since the start.
    int readCount() const { return readCount_; }
    const std::vector<std::string>& violations() const { return violations_; }
    /// The number of windows that were closed since the start.
    int closedCount() const { return closedCount_; }
    int openedCount() const { return openedCount_; }

    // AccessibilityServicing
    std::optional<WindowSizeHints> sizeHints(const AccessibilityElement& element) const override;
    bool areSizesReliable(const AccessibilityElement&) const override;
    bool isProcessTrusted() const override { return isTrusted_; }
    bool requestTrust(bool prompt) override;
    std::optional<std::string> unavailableReason() const override { return unavailableReason_; }
    std::optional<std::string> stalePermission() const override;
    bool readsSendRequests() const override { return style_ == DesktopStyle::mac; }
    AccessibilityElement applicationElement(pid_t processIdentifier) const override;
    std::vector<AttributeValue> readAttributes(const AccessibilityElement& element,
                                               std::span<const AccessibilityAttribute> attributes) const override;
    WindowPresence presenceOf(const AccessibilityElement& window) const override;
    std::optional<std::uint64_t> spaceOf(const AccessibilityElement& window) const override;
    std::uint64_t shownSpace() const override;
    std::uint64_t windowManagerChanges() const override { return windowManagerChanges_; }
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
    AnnouncementResponse requestAnnouncements(const AccessibilityElement& element) override;
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
    // Each window uses that many numbers: the first for itself, the others for the elements inside it.
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
    /// The frame of the display under the top left corner of `frame`; if there is none, of the first display.
    CGRect displayFrameUnder(const CGRect& frame) const;
    CGPoint firstDisplayOrigin() const;
    bool isOnSomeDisplay(const CGRect& frame) const;
    void displaysChanged();
    CGPoint onScreen(CGPoint pointOnDesktop) const;

    // Exists while the main button is down: where it was pressed, and the window or the handle under it.
    struct Hold {
        std::uint64_t window = 0; // its number; 0: the button was not pressed on a window
        WindowPart grip = WindowPart::nothing;
        CGRect frame{};  // of the window, when the button went down
        CGPoint start{}; // where the button went down
        std::optional<std::string> handleID{};
        bool isOver = false; // the handle is not dragged: the press ended a double click, or Escape ended the drag
    };
    struct Click {
        std::string handleID;
        Seconds when{};
    };
    const DividerHandle* handleAt(CGPoint pointOnDesktop) const;
    void postEvent(PointerEvent::Kind kind, CGPoint pointOnDesktop, ShiftKey shift = ShiftKey::up);
    void postEvent(DividerHandleEvent::Kind kind, const std::string& handleID, CGPoint pointOnDesktop);

    void changed(); // applications, Spaces, displays or the session changed; the system itself announces this
    void changed(const SimulatedWindow& window);
    void changed(const Application& application); // the list of its windows changed, or its focused window
    void announce();
    void announceLater();
    void announceChange();
    /// Returns whether the application responds in time. During a poll, the time until the response or until the
    /// deadline passes.
    bool waitForResponse(const Application& application) const;
    bool isInTime(const Application& application) const;
    void addToJournal(std::string line);
    void requireMainThread(const char* call) const;
    void remove(const SimulatedWindow& window);
    void setFrameOf(SimulatedWindow& window, const CGRect& frame);
    /// The window to which the dialog `window` belongs; null for other windows.
    const SimulatedWindow* parentOf(const SimulatedWindow& window) const;
    /// The windows that are minimized and restored together with `window`: the topmost parent, its dialogs, and their
    /// dialogs.
    std::vector<SimulatedWindow*> familyOf(const SimulatedWindow& window);
    void setMinimized(SimulatedWindow& window, bool minimized);
    void setMinimizedAlone(SimulatedWindow& window, bool minimized);
    void setMinimizedByRequest(SimulatedWindow& window, bool minimized);
    /// Whether the window was minimized alone, and not because its application was hidden.
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
    std::vector<SimulatedDisplay> displays_; // in the order of `screens`
    std::deque<Application> applications_;   // in the order of their launches
    std::vector<Installation> installations_;
    std::map<pid_t, bool> forkingPrograms_; // for each process: whether it has ended
    std::vector<Alert> alerts_;
    AlertServicing* alternativeAlerts_ = nullptr;
    std::deque<std::function<void(bool)>> pendingConfirmations_;
    std::map<std::uint64_t, SimulatedWindow> windows_;
    std::vector<std::uint64_t> stacking_; // front to back
    std::optional<pid_t> frontmost_;
    std::optional<pid_t> activationThief_; // set by `stealNextActivation`
    HidingStyle hidingStyle_ = HidingStyle::hidesApplication;
    bool placesWindows_ = false;
    std::optional<std::string> placingManager_;
    DesktopStyle style_ = DesktopStyle::knowsItsWindows;
    SimulatedAnnouncements announcements_;
    Seconds responseTime_{0};
    bool isPermissionStale_ = false;
    SpaceStyle spaceStyle_ = SpaceStyle::listsAll;
    int virtualDesktop_ = 0;
    int lastOwnSpace_ = 1000;        // the newest Space of a full-screen window; scenarios use lower numbers
    std::uint64_t spaceChanges_ = 0; // `shownSpace` with `SpaceStyle::listsShown`
    Seconds spaceNotificationDelay_{0};
    std::map<std::uint64_t, SimulatedWindow> retained_; // closed, but still responding
    bool strandsWindows_ = false;
    bool isTrusted_ = true;
    std::optional<std::string> unavailableReason_;
    bool answerToPrompt_ = false;
    bool isLocked_ = false;
    std::optional<Seconds> managerComesAt_; // the uptime at which the new window manager starts
    std::uint64_t windowManagerChanges_ = 0;
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
