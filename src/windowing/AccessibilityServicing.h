// The seam to other applications' windows: the vocabulary of the accessibility interface, which every desktop answers.
// Reads give "no value" for whatever cannot be read; writes and actions are wishes that the desktop may not grant.
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
/// long as it lives. A plain value: copying it asks the desktop nothing.
struct AccessibilityElement {
    pid_t processIdentifier = 0;
    std::uint64_t hash = 0;             // 0 for the application element itself
    std::shared_ptr<const void> object; // the platform's own object, where it has one

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
    parent, // of a window: its application, or the window that it is a dialog of
    main,
    focused,
    fullScreen,
    maximized, // fills its display by the window manager's doing, in one direction at least; no Mac window ever is
    enhancedUserInterface, // of a Mac application: while it is on, the application animates frames that are written
};

/// "AXWindows", "AXFocusedWindow", and so on.
std::string_view attributeName(AccessibilityAttribute attribute);

enum class AccessibilityAction { raise };

/// "AXRaise".
std::string_view actionName(AccessibilityAction action);

/// monostate: there is no such attribute, or it could not be read.
using AttributeValue = std::variant<std::monostate, bool, std::string, CGPoint, CGSize, AccessibilityElement,
                                    std::vector<AccessibilityElement>>;

struct AttributeWrite {
    AccessibilityAttribute attribute;
    AttributeValue value;
};

/// One window as the window server shows it.
struct OnScreenWindow {
    pid_t processIdentifier = 0;
    int layer = 0;   // 0: ordinary windows
    CGRect bounds{}; // window-service space
};

/// What became of a window that its application does not list.
enum class WindowPresence {
    present,  // it exists and is not shown: it is on another Space, in full screen there, or behind another tab
    gone,     // it was closed
    noAnswer, // its application did not answer in time
};

/// A dialog is a window whose parent is a window. It stays above that window, and leaves the screen and comes back with
/// it; a desktop need not move it along. A window that comes back leaves the keyboard where it is, unless it is to have
/// the keyboard. A position or size written to a maximized window ends that first.
class AccessibilityServicing {
  public:
    virtual ~AccessibilityServicing() = default;

    /// Whether this process may manage other applications' windows; never shows a prompt. Any thread.
    virtual bool isProcessTrusted() const = 0;
    /// Why no window of this session can be managed, whatever the user permits, and what to do; absent where they can
    /// be. Any thread.
    virtual std::optional<std::string> absence() const { return std::nullopt; }
    /// Whether this process may manage windows, showing the system's prompt if asked to and there is one. Main thread.
    virtual bool requestTrust(bool prompt) = 0;

    /// What to do about a permission that the process has and that every application ignores, as after an update with
    /// another signature; absent as a rule. Known after a poll. Any thread; never waits.
    virtual std::optional<std::string> stalePermission() const { return std::nullopt; }
    /// Whether each read is answered by the application itself, whose main thread it takes time from; false where the
    /// desktop answers from what it knows. Any thread.
    virtual bool readsAskApplications() const { return false; }

    /// The element of an application; it exists as a value even when the process does not. Any thread.
    virtual AccessibilityElement applicationElement(pid_t processIdentifier) const = 0;

    /// The values of the attributes, in the order asked for, in one request. An application that does not answer costs
    /// at most the platform's deadline (0.25 s), then every value is absent. Called on the polling queue; on the main
    /// thread a platform answers from what it knows. There, applications that timed out are
    /// skipped until a poll reaches them again. Without permission nothing is known.
    virtual std::vector<AttributeValue> readAttributes(const AccessibilityElement& element,
                                                       std::span<const AccessibilityAttribute> attributes) const = 0;

    /// Which sizes the window takes; absent where the desktop has no such hints, as on a Mac. Any thread.
    virtual std::optional<WindowSizeHints> sizeHints(const AccessibilityElement&) const { return std::nullopt; }
    /// Whether the sizes that windows show now are their own: false for about two seconds after the window manager was
    /// replaced, and while the window gets other decorations. Main thread.
    virtual bool areSizesReliable(const AccessibilityElement&) const { return true; }

    /// Asked only for a window that was known before and that its application does not list any more. Costs at most the
    /// platform's deadline. Polling queue.
    virtual WindowPresence presenceOf(const AccessibilityElement& window) const = 0;

    /// The Space (virtual desktop) that the window belongs to; absent for one on every Space, and on desktops that do
    /// not tell. Any thread; never waits.
    virtual std::optional<std::uint64_t> spaceOf(const AccessibilityElement&) const { return std::nullopt; }
    /// Differs whenever another Space is shown; where `spaceOf` tells Spaces, the one that is shown. Any thread; never
    /// waits.
    virtual std::uint64_t shownSpace() const { return 0; }

    /// Writes the attributes in the order given, as one request where the desktop can: a position and a size written
    /// together move and size a window at once. A refused write is dropped silently. Main thread.
    virtual void writeAttributes(const AccessibilityElement& element, std::span<const AttributeWrite> writes) = 0;

    /// Performs the action; a refusal is silent. Main thread.
    virtual void performAction(const AccessibilityElement& element, AccessibilityAction action) = 0;

    /// The deepest element under a point of window-service space; over the bare desktop absent, or an element that
    /// lies in no window. Main thread.
    virtual std::optional<AccessibilityElement> elementAtPosition(CGPoint point) const = 0;

    /// Windows that are on the screen now, front to back; empty when the desktop cannot say. Any thread.
    virtual std::vector<OnScreenWindow> onScreenWindows() const = 0;

    /// The name of a window manager that places all windows itself, so that frames are not taken; absent as a rule.
    /// Main thread; never waits.
    virtual std::optional<std::string> placingManager() const { return std::nullopt; }

    /// Sends what was written so far; called at the end of every operation that wrote to several windows. Main thread.
    virtual void flush() = 0;
};

/// What became of a request to announce changes.
enum class AnnouncementAnswer { announces, refuses, noAnswer };

/// Whether a poll could find anything new. A desktop that announces every change by an event vouches for it, and then
/// no poll is needed.
class DesktopChangeServicing {
  public:
    virtual ~DesktopChangeServicing() = default;

    /// A number that grows with every change that a poll could see (windows, titles, frames, focus,
    /// applications, permission, lock); absent when the desktop cannot vouch for that. Any thread.
    virtual std::optional<std::uint64_t> changeCount() const = 0;
    /// Calls back once, on the main queue, when the count differs from `count`: at once if it does already. A new call
    /// replaces the one before; an empty function cancels it. Main thread.
    virtual void notifyWhenChanged(std::uint64_t count, std::function<void()> callback) = 0;

    /// False where each application and each window has to be asked to announce its changes (`requestAnnouncements`).
    /// Any thread.
    virtual bool announcesUnasked() const { return true; }
    /// Asks an application, or a window, to announce its changes; an element is asked again only after `noAnswer` or
    /// `endAnnouncements`. Costs at most the platform's deadline. Polling queue.
    virtual AnnouncementAnswer requestAnnouncements(const AccessibilityElement&) {
        return AnnouncementAnswer::announces;
    }
    /// The element is gone, or of no interest any more. Costs at most the platform's deadline. Polling queue.
    virtual void endAnnouncements(const AccessibilityElement&) {}
    /// How long polls may rest although no change was announced, where announcements can get lost; absent where none
    /// can. Any thread.
    virtual std::optional<Seconds> longestRest() const { return std::nullopt; }
};

} // namespace kova
