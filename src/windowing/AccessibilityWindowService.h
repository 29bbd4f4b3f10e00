// The only class that accesses other applications' windows: lists them, reads and writes their frames, focuses, raises
// and minimizes them. It uses the accessibility vocabulary, so it is the same on every desktop. It keeps no list of
// windows. A failed read gives no value; verification passes correct failed writes of frames.
#pragma once

#include "support/Lifetime.h"
#include "support/MainQueue.h"
#include "windowing/AccessibilityServicing.h"
#include "windowing/ApplicationServicing.h"
#include "windowing/ChangeNotifications.h"
#include "windowing/FrameAnimations.h"
#include "windowing/FrameVerification.h"
#include "windowing/ManagedWindow.h"
#include "windowing/ScreenServicing.h"

#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace kova {

/// The attributes of a window that can be managed, read from its accessibility element.
struct WindowCandidate {
    WindowID id;
    AccessibilityElement element;
    std::string title;
    bool isMinimized = false;
    bool isFullScreen = false;
    bool isMaximized = false;
    std::optional<CGRect> frame;        // window-service space
    std::optional<CGSize> minimumSize;  // points
    std::optional<WindowID> parentID{}; // absent if the parent is not a window of the same application
};

/// A window of the last poll.
struct KnownWindow {
    WindowID id;
    AccessibilityElement element;
};

/// A known window that its application does not list any more, and that was not closed.
struct UnlistedWindow {
    WindowID id;
    bool isResponding = true;           // false: its application does not respond
    std::optional<WindowCandidate> now; // absent if not `isResponding`, or if the window cannot be managed any more
};

/// The result of one poll.
struct WindowEnumeration {
    std::vector<ManagedWindow> listed;
    std::vector<UnlistedWindow> unlisted; // in the order of the known windows
    std::vector<UnmanagedWindow> unmanaged;
    std::vector<pid_t> applications; // processes of the applications whose windows are managed
    std::uint64_t shownSpace = 0;
};

WindowID windowID(pid_t processIdentifier, const AccessibilityElement& window);

/// Main thread, except for the functions that say otherwise.
class AccessibilityWindowService {
  public:
    AccessibilityWindowService(AccessibilityServicing& accessibility, ApplicationServicing& applications,
                               ScreenServicing& screens, std::shared_ptr<ChangeNotifications> changes,
                               MainQueue& queue);

    AccessibilityPermissionState permissionState() const; // any thread
    AccessibilityPermissionState requestPermission(bool prompt);
    /// See `AccessibilityServicing`.
    std::optional<std::string> stalePermission() const { return accessibility_.stalePermission(); }

    /// Lists every window that can be managed. For each known window that is not listed, one more request finds out
    /// whether the window still exists. An unresponsive application gets only one such request. Call on the polling
    /// queue; reads and changes no members that the main thread changes.
    WindowEnumeration enumerateWindows(std::span<const KnownWindow> known = {}) const;
    /// Reads one element; absent if it is not a window that can be managed. This function and the next one may also be
    /// called on the polling queue, where they may wait for the application.
    std::optional<WindowCandidate> windowCandidate(const AccessibilityElement& element, pid_t processIdentifier) const;
    /// In window-service space; absent if the window is gone.
    std::optional<CGRect> readFrame(const AccessibilityElement& element) const;

    enum class BringToFront { no, yes };
    /// Writes the frame (window-service space) and verifies it in four passes over the next 0.65 s; a newer request for
    /// the window ends the passes of the older one. `onMinimumSizeObserved` is called once, on the last pass, with the
    /// frame of a window that refuses to shrink, if it had the same size in the pass before and its sizes are reliable.
    void setFrame(const ManagedWindow& window, const CGRect& frame, BringToFront bringToFront,
                  std::function<void(CGRect)> onMinimumSizeObserved);
    /// Writes the frame once, immediately, while the user drags. Ends the pending passes of the window.
    void setFrameInteractive(const ManagedWindow& window, const CGRect& frame);
    /// Writes the position (window-service space) once and does not change the size.
    void move(const ManagedWindow& window, CGPoint origin);
    /// Ends the pending passes of the window and writes nothing.
    void cancelPlacement(const WindowID& windowID);
    /// Ends the pending passes of the windows for whose requested frame (window-service space) `isChosen` returns true;
    /// writes nothing.
    void cancelPlacements(const std::function<bool(const CGRect& target)>& isChosen);
    /// The frame that was requested for the window, until the last pass of this request; absent at other times.
    std::optional<CGRect> pendingFrame(const WindowID& windowID) const;

    /// Shows the application, restores the window and brings both to the front with keyboard focus. Then requests the
    /// focus once more, in case another application has taken it. False if the window or its application does not exist
    /// any more, or the permission is missing.
    bool restoreAndFocus(const ManagedWindow& window);
    void minimize(const ManagedWindow& window);
    void unminimize(const ManagedWindow& window);
    void maximize(const ManagedWindow& window);
    void raise(const ManagedWindow& window);
    void presentDisplaced(const ManagedWindow& window, DisplacedWindowPresentationAction action);
    void unhideApplication(pid_t processIdentifier);
    bool isApplicationHidden(pid_t processIdentifier) const;

    /// The window element under a point of screen space, with its process.
    std::optional<std::pair<pid_t, AccessibilityElement>> windowElement(CGPoint pointOnScreen) const;
    /// The id of the focused window of the front application; absent if no window has the focus.
    std::optional<WindowID> focusedWindowID() const;
    bool areSizesReliable(const ManagedWindow& window) const { return accessibility_.areSizesReliable(window.element); }
    /// Sends all writes that were requested so far.
    void flush();

  private:
    struct Placement;
    struct VerificationRound;
    struct PendingFrame {
        CGRect frame;
        std::uint64_t placementNumber = 0; // of the window's newest request
        std::optional<Seconds> end;        // uptime; absent while the window's last pass is scheduled
    };
    struct PollResults;
    void enumerateWindows(const RunningApplication& application, std::span<const CGRect> onScreenRectangles,
                          PollResults& results) const;
    std::vector<UnlistedWindow> unlistedWindows(std::span<const KnownWindow> known, const PollResults& results) const;
    bool readBoolean(AccessibilityAttribute attribute, const AccessibilityElement& element) const;
    ApplicationIcon icon(const RunningApplication& application) const;
    void write(const AccessibilityElement& element, AccessibilityAttribute attribute, bool value);
    void writeFrame(const AccessibilityElement& element, const CGRect& frame, FrameWriteOrder order);
    bool isRunning(pid_t processIdentifier) const;
    void requestFocus(const AccessibilityElement& window, pid_t processIdentifier);
    void verifyLater(Placement placement);
    void scheduleVerification(const std::shared_ptr<VerificationRound>& round);
    void verify(const std::shared_ptr<VerificationRound>& round);
    enum class PassResult { onTarget, mustRepeat };
    PassResult verify(Placement& placement, int pass);
    void verifyAfterChange(const std::shared_ptr<VerificationRound>& round, std::uint64_t changeCount);
    void resumeVerification(const std::shared_ptr<VerificationRound>& round);
    PendingFrame* pendingFrameOf(const Placement& placement);
    void endVerification(const WindowID& windowID);
    void correct(const Placement& placement, int pass);

    AccessibilityServicing& accessibility_;
    ApplicationServicing& applications_;
    ScreenServicing& screens_;
    const std::shared_ptr<ChangeNotifications> changes_; // shared, since a poll may outlive the workspace
    MainQueue& queue_;
    FrameAnimations animations_;
    std::unordered_map<WindowID, PendingFrame> pendingFrames_;
    std::uint64_t lastPlacementNumber_ = 0;
    std::shared_ptr<VerificationRound> newestRound_;                // absent after its first pass has begun
    std::vector<std::shared_ptr<VerificationRound>> waitingRounds_; // rounds whose next pass waits for a change
    Lifetime lifetime_;
};

} // namespace kova
