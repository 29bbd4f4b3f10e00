// Platform interface to other applications' windows, in the vocabulary of the Mac's accessibility interface. An
// attribute that cannot be read has no value; writes and actions are requests that the desktop may refuse.
// Frames are in window-service space: points, origin at the top left of the first screen, y growing downwards.
#pragma once

#include "support/Geometry.h"
#include "support/MainQueue.h"
#include "windowing/WindowSizeHints.h"

#include <sys/types.h>

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace kova {

/// A window, an application or another element of the accessibility tree. Equal handles mean the same element for as
/// long as it lives. A plain value: copying it sends no request.
struct AccessibilityElement {
    pid_t processIdentifier = 0;
    std::uint64_t hash = 0;             // 0 for the application element itself
    std::shared_ptr<const void> object; // the platform's object, if it has one

    bool operator==(const AccessibilityElement& other) const {
        return processIdentifier == other.processIdentifier && hash == other.hash;
    }
};

enum class AccessibilityAttribute {
    windows,       // of an application: its windows
    focusedWindow, // of an application
    frontmost,     // of an application
    role,
    subrole,
    title,
    minimized,
    position,
    size,
    minSize,
    minimumSize,
    parent, // of a window: its application; of a dialog: the window to which it belongs
    main,
    focused,
    fullScreen,
    maximized,             // by the window manager, in one direction at least; never on a Mac
    enhancedUserInterface, // of a Mac application: while this is on, the application animates each change of a frame
};

/// "AXWindows", "AXFocusedWindow", and so on.
std::string_view attributeName(AccessibilityAttribute attribute);

enum class AccessibilityAction { raise };

/// "AXRaise".
std::string_view actionName(AccessibilityAction action);

/// monostate: the attribute does not exist or could not be read.
using AttributeValue = std::variant<std::monostate, bool, std::string, CGPoint, CGSize, AccessibilityElement,
                                    std::vector<AccessibilityElement>>;

struct AttributeWrite {
    AccessibilityAttribute attribute;
    AttributeValue value;
};

/// One window in the window server's list of windows on the screen.
struct OnScreenWindow {
    pid_t processIdentifier = 0;
    int layer = 0;   // 0: ordinary windows
    CGRect bounds{}; // window-service space
};

/// The state of a window that its application does not list.
enum class WindowPresence {
    present, // it exists and is not shown: on another Space, in full screen there, or behind another tab
    closed,
    noResponse, // its application did not respond in time
};

/// Every implementation meets these requirements: A dialog is a window whose parent is a window. A dialog stays above
/// its parent and is hidden and shown with it, but need not move with it. A restored window gets the focus only if that
/// is requested. Writing a position or a size to a maximized window first ends the maximized state.
class AccessibilityServicing {
  public:
    virtual ~AccessibilityServicing() = default;

    /// Whether this process may manage other applications' windows; never shows a prompt. Any thread.
    virtual bool isProcessTrusted() const = 0;
    /// Why windows of this session cannot be managed even with a permission, and what to do; absent if they can be. Any
    /// thread.
    virtual std::optional<std::string> unavailableReason() const { return std::nullopt; }
    /// Whether this process may manage windows, showing the system's dialog if requested and there is one. Main thread.
    virtual bool requestTrust(bool prompt) = 0;

    /// What the user can do if the permission is granted but has no effect, as after an update with another signature;
    /// absent if the permission has an effect. Absent until a poll has found it out. Any thread; never waits.
    virtual std::optional<std::string> stalePermission() const { return std::nullopt; }
    /// Whether each read sends a request to the application, which costs time on the application's main thread; false
    /// if the platform reads from its own model. Any thread.
    virtual bool readsSendRequests() const { return false; }

    /// The element of an application; it exists as a value even when the process does not. Any thread.
    virtual AccessibilityElement applicationElement(pid_t processIdentifier) const = 0;

    /// The values of the attributes, in the given order, with one request. An unresponsive application costs at most
    /// the platform's timeout (0.25 s); then every value is absent. Call on the polling queue. On the main thread a
    /// platform reads from its model, or skips applications that timed out until a poll reaches them again. Without
    /// permission all values are absent.
    virtual std::vector<AttributeValue> readAttributes(const AccessibilityElement& element,
                                                       std::span<const AccessibilityAttribute> attributes) const = 0;

    /// Which sizes the window accepts; absent if the desktop has no such hints, as on a Mac. Any thread.
    virtual std::optional<WindowSizeHints> sizeHints(const AccessibilityElement&) const { return std::nullopt; }
    /// Whether the window's present size tells which sizes the window accepts. False for about two seconds after the
    /// window manager was replaced, and while the window gets other decorations. Main thread.
    virtual bool areSizesReliable(const AccessibilityElement&) const { return true; }

    /// Call only for a known window that its application does not list any more. Costs at most the platform's timeout.
    /// Polling queue.
    virtual WindowPresence presenceOf(const AccessibilityElement& window) const = 0;

    /// The window's Space (virtual desktop); absent for a window on all Spaces, and on desktops that do not report it.
    /// Any thread; never waits.
    virtual std::optional<std::uint64_t> spaceOf(const AccessibilityElement&) const { return std::nullopt; }
    /// A number that changes whenever another Space is shown. On desktops that implement `spaceOf`, it is the value
    /// that `spaceOf` returns for the windows of the shown Space. Any thread; never waits.
    virtual std::uint64_t shownSpace() const { return 0; }
    /// A number that changes when the desktop has settled after a change of the window manager. Windows that KOVA had
    /// hidden may be shown then. Any thread; never waits.
    virtual std::uint64_t windowManagerChanges() const { return 0; }

    /// Writes the attributes in the given order, as one request if the desktop can: position and size together move and
    /// resize at once. A refusal is not reported. Main thread.
    virtual void writeAttributes(const AccessibilityElement& element, std::span<const AttributeWrite> writes) = 0;

    /// Performs the action. A refusal is not reported. Main thread.
    virtual void performAction(const AccessibilityElement& element, AccessibilityAction action) = 0;

    /// The deepest element under a point of window-service space. Over the bare desktop the result is absent, or an
    /// element outside all windows. Main thread.
    virtual std::optional<AccessibilityElement> elementAtPosition(CGPoint point) const = 0;

    /// Windows that are on the screen now, front to back; empty if the desktop does not report them. Any thread.
    virtual std::vector<OnScreenWindow> onScreenWindows() const = 0;

    /// The name of the window manager if it places all windows itself and ignores requested frames; else absent. Main
    /// thread; never waits.
    virtual std::optional<std::string> placingManager() const { return std::nullopt; }

    /// Sends all writes so far; call at the end of every operation that writes to several windows. Main thread.
    virtual void flush() = 0;
};

/// The result of a request to announce changes.
enum class AnnouncementResponse { announces, refuses, noResponse };

/// Tells whether the desktop may have changed since the last poll. On a desktop that announces every change by an
/// event, polls stop while nothing happens.
class DesktopChangeServicing {
  public:
    virtual ~DesktopChangeServicing() = default;

    /// A number that grows with every change that a poll could see (windows, titles, frames, focus,
    /// applications, permission, lock); absent if the desktop does not announce all changes. Any thread.
    virtual std::optional<std::uint64_t> changeCount() const = 0;
    /// Calls `callback` once, on the main queue, as soon as the count differs from `count`, which may be the case
    /// already. A new callback replaces the former one; an empty function cancels the former one. Main thread.
    virtual void notifyWhenChanged(std::uint64_t count, std::function<void()> callback) = 0;

    /// False if `requestAnnouncements` must be called for each application and each window. Any thread.
    virtual bool announcesWithoutRequest() const { return true; }
    /// Requests that an application or a window announces its changes. Call again for the same element only after
    /// `noResponse` or `endAnnouncements`. Costs at most the platform's timeout. Polling queue.
    virtual AnnouncementResponse requestAnnouncements(const AccessibilityElement&) {
        return AnnouncementResponse::announces;
    }
    /// Ends the announcements of an element. Costs at most the platform's timeout. Polling queue.
    virtual void endAnnouncements(const AccessibilityElement&) {}
    /// The longest time without a poll on a desktop whose announcements can get lost. Absent if no announcement can get
    /// lost. Any thread.
    virtual std::optional<Seconds> longestIdleTime() const { return std::nullopt; }
};

} // namespace kova
