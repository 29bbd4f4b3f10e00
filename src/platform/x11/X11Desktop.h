// A desktop on X11, together with any window manager that conforms to EWMH, or without a window manager.
// The main thread handles events, writes, and never waits for the server once the desktop is open: it reads from a
// model that events update. The first call of a poll, on the polling queue, updates the model and may wait. An idle
// desktop causes no wake-up and no request.
#pragma once

#include "platform/x11/ApplicationCatalogue.h"
#include "platform/x11/ApplicationLauncher.h"
#include "support/MainQueue.h"
#include "windowing/AccessibilityServicing.h"
#include "windowing/ApplicationServicing.h"
#include "windowing/DiagnosticsServicing.h"
#include "windowing/KeyMonitorServicing.h"
#include "windowing/PointerServicing.h"
#include "windowing/ScreenServicing.h"
#include "windowing/SystemActivityServicing.h"

#include <memory>
#include <optional>
#include <string>
#include <variant>

namespace kova {

class X11Desktop final : public AccessibilityServicing,
                         public ApplicationServicing,
                         public ScreenServicing,
                         public DesktopChangeServicing,
                         public SystemActivityServicing,
                         public DiagnosticsServicing,
                         public PointerMonitorServicing,
                         public DividerHandleServicing,
                         public KeyMonitorServicing {
  public:
    struct Options {
        std::optional<std::string> displayName;  // absent: DISPLAY
        std::string hiddenWindowsFile;           // its folder exists; empty: hidden windows are kept in memory only
        ApplicationLauncher* launcher = nullptr; // outlives the desktop; null: nothing can be launched
        Seconds returnTimeoutAtEnd{0.5};         // how long the destructor waits for windows to return
        /// Windows that a killed agent has hidden stay hidden until `resolveLeftoverHiddenWindows`.
        bool keepsLeftoverWindowsHidden = false;
        bool queriesProcesses = true; // asks the server for the processes of windows; false: only windows' properties
        bool claimsServer = false;    // opening fails if another agent has claimed the server
    };
    /// Why the desktop could not be opened.
    struct Failure {
        std::string reason; // for the user, with what to do
        bool isClaimedByOther = false;
    };
    /// Connects and reads the whole desktop, waiting for the server. Shows windows that a killed agent had hidden. The
    /// calling thread becomes the main thread. Queue and catalogue must outlive the desktop; the polling queue must end
    /// before the desktop is destroyed.
    static std::variant<std::unique_ptr<X11Desktop>, Failure> open(const Options& options, MainQueue& queue,
                                                                   ApplicationCatalogue& catalogue);
    /// Shows all windows that were hidden.
    ~X11Desktop() override;
    X11Desktop(const X11Desktop&) = delete;
    X11Desktop& operator=(const X11Desktop&) = delete;

    /// Makes the main loop watch a descriptor: it calls `readable` whenever there is something to read, until the
    /// subscription is dropped.
    using Watch = std::function<Subscription(int descriptor, std::function<void()> readable)>;
    /// From now on reads events when they arrive, with one exception: after an event that shows that the next poll will
    /// find changes, further events stay unread for a while. The poll reads them, or an earlier read of the model does.
    /// So a program that changes its title continuously does not keep the agent awake. `lost` is called once, when the
    /// connection has ended.
    void listen(Watch watch, std::function<void()> lost);
    /// Readable when there are events for `readEvents`.
    int connectionDescriptor() const;
    /// Reads and handles events; never waits. False once the connection is lost.
    bool readEvents();
    /// Shows every window that KOVA hid, except those minimized under a window manager.
    void restoreHidden();

    // AccessibilityServicing
    bool isProcessTrusted() const override;
    bool requestTrust(bool prompt) override;
    AccessibilityElement applicationElement(pid_t processIdentifier) const override;
    std::vector<AttributeValue> readAttributes(const AccessibilityElement& element,
                                               std::span<const AccessibilityAttribute> attributes) const override;
    std::optional<WindowSizeHints> sizeHints(const AccessibilityElement& element) const override;
    bool areSizesReliable(const AccessibilityElement& element) const override;
    /// The window manager lists the windows of all desktops, so an unlisted window is closed.
    WindowPresence presenceOf(const AccessibilityElement& window) const override;
    std::optional<std::uint64_t> spaceOf(const AccessibilityElement& window) const override;
    std::uint64_t shownSpace() const override;
    std::uint64_t windowManagerChanges() const override;
    void writeAttributes(const AccessibilityElement& element, std::span<const AttributeWrite> writes) override;
    void performAction(const AccessibilityElement& element, AccessibilityAction action) override;
    std::optional<AccessibilityElement> elementAtPosition(CGPoint point) const override;
    std::optional<std::string> placingManager() const override;
    std::vector<OnScreenWindow> onScreenWindows() const override;
    void flush() override;

    // ApplicationServicing
    pid_t ownProcessIdentifier() const override;
    std::vector<RunningApplication> runningApplications() const override;
    std::optional<RunningApplication> runningApplication(pid_t processIdentifier) const override;
    bool isApplicationHidden(pid_t processIdentifier) const override;
    std::optional<pid_t> frontmostApplication() const override;
    ApplicationIcon iconForFile(const std::string& path) const override;
    ApplicationIcon systemSymbolIcon(const std::string& name) const override;
    void hide(pid_t processIdentifier) override;
    void unhide(pid_t processIdentifier) override;
    std::optional<std::string> processStartIdentity(pid_t processIdentifier) const override;
    bool hasLaunchedProcessSucceeded(pid_t processIdentifier) const override;
    void resolveLeftoverHiddenWindows(LeftoverWindows leftoverWindows) override;
    void activate(pid_t processIdentifier) override;
    std::vector<LaunchableApplication> launchableApplications() const override;
    std::optional<LaunchableApplication> launchableApplication(const BundleID& bundleIdentifier) const override;
    void launch(const LaunchableApplication& application, LaunchActivation activation,
                LaunchCompletion completion) override;
    bool terminate(pid_t processIdentifier) override;
    std::optional<std::string> forceTerminate(pid_t processIdentifier) override;

    // ScreenServicing
    std::vector<Screen> screens() const override;
    Subscription observeScreens(std::function<void()> changed) override;
    /// The position at the last poll, focus change or crossing of a window's edge. Each call also queries the server,
    /// so that the next call has a newer position.
    std::optional<CGPoint> pointerLocation() const override;

    // DesktopChangeServicing
    std::optional<std::uint64_t> changeCount() const override;
    void notifyWhenChanged(std::uint64_t count, std::function<void()> callback) override;

    // SystemActivityServicing
    /// Reports only that the screens go off and on, and only on a server that can switch them off.
    Subscription observeSystemActivity(std::function<void(SystemActivityEvent)> observer) override;

    // DiagnosticsServicing
    std::vector<DiagnosticLine> diagnose() const override;
    std::optional<std::string> limitation() const override;

    // PointerMonitorServicing
    /// No events on a server without XInput 2.1.
    Subscription observePointer(std::function<void(const PointerEvent&)> observer) override;

    // DividerHandleServicing
    void showHandles(const std::vector<DividerHandle>& handles) override;
    Subscription observeHandles(std::function<void(const DividerHandleEvent&)> observer) override;

    // KeyMonitorServicing
    Subscription addGlobalMonitor(std::function<void(const KeyPress&)> monitor) override;
    Subscription addLocalMonitor(std::function<bool(const KeyPress&)> monitor) override;
    void claim(const std::vector<KeyCombination>& combinations) override;
    /// Each call also tries again to grab these combinations; a later call returns the result.
    std::vector<KeyCombination> heldByOthers() const override;
    Subscription observeHeldByOthers(std::function<void()> known) override;
    Subscription recordKeys(std::function<bool(const KeyPress&)> recorder,
                            std::function<void(const std::string& reason)> failed) override;
    std::string charactersOf(std::uint16_t keyCode) const override;

  private:
    void awaitReturningWindows();
    struct Parts;
    X11Desktop(std::unique_ptr<Parts> parts, const Options& options);

    std::unique_ptr<Parts> parts_;
};

} // namespace kova
