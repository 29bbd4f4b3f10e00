// The model of the server's windows; all reads use the model. Events update it: geometry, mapping and stacking are part
// of the events; a changed property is only marked stale and read by the next poll. The model sends no requests and
// never waits. Not thread-safe: a mutex in X11Parts guards it.
//
// Only the root's children report geometry. The frame of a decorated window is computed from the window manager's frame
// around it, whose margins were measured once, so that a move costs one event and no request.
#pragma once

#include "platform/x11/ClientWindow.h"

#include <optional>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace kova::x11 {

/// A child of the root window.
struct TopLevel {
    PixelRect rect; // including the border
    int border = 0;
    bool isMapped = false;
    bool isOverrideRedirect = false;
    // Sequence numbers of the last events about the frame and about mapping:
    std::optional<std::uint32_t> rectEventSequence, mappingEventSequence;
};

struct WindowManager {
    bool isPresent = false;             // a window manager that publishes a list of its clients is running
    bool publishesNoClientList = false; // one without such a list is running; frames and windows look alike
    xcb_window_t checkWindow = kNoWindow;
    std::string name;
    bool movesAndResizes = false; // understands _NET_MOVERESIZE_WINDOW
    bool restacks = false;        // understands _NET_RESTACK_WINDOW
    bool announcesDecorations = false;
    bool announcesHidden = false; // sets _NET_WM_STATE_HIDDEN on minimized windows
    bool operator==(const WindowManager&) const = default;
};

/// The work that an event requires from the caller.
struct EventEffects {
    bool changed = false; // a poll would see a change
    bool mustQueryActiveWindow = false;
    bool mustQueryDisplays = false;
    bool mustQueryScreenPower = false;
    bool mustQueryScale = false;
    bool panelsChanged = false;
    std::vector<xcb_window_t> redecorated;  // windows whose decorations changed
    std::vector<xcb_window_t> stateChanged; // windows whose state changed; only under a window manager
    std::vector<xcb_window_t> returning;    // were minimized as requested; KOVA has since requested to restore them
    void add(EventEffects&& other);
    bool isForMainThread() const {
        return mustQueryActiveWindow || mustQueryDisplays || mustQueryScreenPower || mustQueryScale || panelsChanged ||
               !redecorated.empty() || !stateChanged.empty() || !returning.empty();
    }
};

class WindowModel {
  public:
    WindowModel(const Atoms& atoms, xcb_window_t root);

    // Events
    EventEffects apply(const xcb_generic_event_t& event);
    void setRandrEventBase(std::optional<std::uint8_t> base) { randrEventBase_ = base; }

    // Replies
    // The parameter `request` is the sequence number of the request whose reply is passed.
    /// Values from later events are kept, and a window that was destroyed since the request stays unknown.
    void takeTopLevel(xcb_window_t window, const TopLevel& reply, std::uint32_t request);
    void setStacking(std::vector<xcb_window_t> bottomFirst) { stacking_ = std::move(bottomFirst); }
    /// Sets the managed windows in their order. New windows are completely stale; missing windows are dropped. While
    /// window managers change, the list is empty or incomplete for a moment. During this time (`isSettling`) missing
    /// windows are kept and marked stale, so that the next poll notices which of them were destroyed.
    void setClientList(const std::vector<xcb_window_t>& windows, Seconds now);
    void setWindowManager(const WindowManager& manager, Seconds now);
    /// True while the window manager is changing, and for a moment afterwards. During this time every poll reads the
    /// properties of the root, and a window may be mapped although KOVA has not requested to restore it.
    bool isSettling() const { return isReleasingWindows_ || settlesAt_; }
    /// Whether the window manager has changed or ended within the duration.
    bool hasManagerChangedWithin(Seconds duration, Seconds now) const {
        return managerChangedAt_ && now - *managerChangedAt_ < duration;
    }
    /// The number of changes of window managers that are over.
    std::uint64_t settledManagerChanges() const { return settledManagerChanges_; }
    /// Call at the beginning of a poll: handles the end of the change of window managers.
    void settle(Seconds now);
    void setTopLevelOf(ClientWindow& client, xcb_window_t topLevel);
    /// Without a window manager: adds a mapped top level that is an application's window to the list.
    void adoptUnmanaged(xcb_window_t window);
    /// Adds a window that a former agent hid to the list.
    void adoptIconified(xcb_window_t window);
    void forget(xcb_window_t client);
    /// Attributes the window to the process. No other function changes the process of a window.
    void setOwner(ClientWindow& client, pid_t process);
    /// Sets the decorations from _NET_FRAME_EXTENTS, which the main thread has requested. If the window is in a frame,
    /// call `takeMeasuredFrame` afterwards.
    void takeDecorations(ClientWindow& client, const PropertyView& extents, std::uint32_t request);
    /// Sets how far the window's area lies inside the window manager's frame.
    void takeMeasuredFrame(ClientWindow& client, const PixelEdges& around, std::uint32_t request);
    /// Sets the focused window; ignored under a window manager. `underPointer`: the root's child under the pointer,
    /// which is focused if the focus follows the pointer.
    void takeFocus(xcb_window_t focus, xcb_window_t underPointer, std::uint32_t request);
    /// Call without a window manager only. The request focuses the window; focus events from before it are ignored.
    void noteFocusRequest(xcb_window_t window, std::uint32_t request);
    /// Sets the state from WM_STATE or _NET_WM_STATE.
    void takeState(ClientWindow& client, const PropertyRule& rule, const PropertyView& value, std::uint32_t request);

    // Reading
    const ClientWindow* client(xcb_window_t window) const;
    ClientWindow* client(xcb_window_t window);
    const TopLevel* topLevel(xcb_window_t window) const;
    const std::vector<xcb_window_t>& clientOrder() const { return order_; }
    /// The clients attributed to the process, in no particular order.
    const std::vector<xcb_window_t>& windowsOf(pid_t process) const;
    const std::vector<xcb_window_t>& stacking() const { return stacking_; } // bottom first
    /// The client inside the root's child; null if there is none.
    const ClientWindow* clientIn(xcb_window_t topLevel) const;
    /// The visible outer edge according to the last events; absent while unknown. While the window manager animates the
    /// frame to or from a small size, this is the edge before the animation.
    std::optional<PixelRect> outerFrame(const ClientWindow& client) const;
    /// The outer frame, or the frame that was requested within the last `maximumAge` and that no event has confirmed
    /// yet. Events of an animated frame do not count as confirmation.
    std::optional<PixelRect> expectedFrame(const ClientWindow& client, Seconds now, Seconds maximumAge) const;
    /// True if the window manager has minimized the window. Without a window manager: true if KOVA has unmapped the
    /// window, or will do so at the next flush; the window's own property is ignored. Windows of other desktops and
    /// shaded windows may be iconic, but do not count as minimized.
    bool isMinimized(const ClientWindow& client) const;
    /// Whether the window is mapped and not minimized; on any virtual desktop.
    bool isShown(const ClientWindow& client) const;
    /// Whether the window is not hidden any more: it is shown, or would be shown on its own virtual desktop.
    bool hasReturned(const ClientWindow& client) const;
    /// The virtual desktop of the window; absent if the window is on all desktops. Also absent without a window
    /// manager, since the properties that a former window manager set are out of date.
    std::optional<std::uint32_t> desktopOf(const ClientWindow& client) const;
    bool isOnCurrentDesktop(const ClientWindow& client) const;
    bool isFullScreen(const ClientWindow& client) const;
    /// The window of the same application to which a dialog belongs: the window in WM_TRANSIENT_FOR, else for a modal
    /// dialog the topmost window of its group. Null for other windows.
    const ClientWindow* parentOf(const ClientWindow& client) const;
    /// The window's dialogs, and their dialogs, each once.
    std::vector<xcb_window_t> dialogsOf(const ClientWindow& client) const;
    const WindowManager& windowManager() const { return manager_; }

    /// True if the server has announced a change whose new value was not requested yet.
    bool isStale() const;
    /// Children of the root that were reparented there, so that no event has reported their size. The list is empty
    /// afterwards.
    std::vector<xcb_window_t> takeUnknownTopLevels() { return std::exchange(unknownTopLevels_, {}); }

    // State of the whole desktop. ModelRefresh and other objects set it, too.
    std::uint32_t staleClients = 0; // how many clients have stale bits
    bool staleClientList = true;
    bool staleManager = true;
    bool staleDesktop = true;
    bool staleWorkarea = true;
    bool ownersChanged = false;     // windows were added or removed; not handled yet
    bool hasManagerChanged = false; // the window manager changed or ended; not handled yet
    xcb_window_t activeWindow = kNoWindow;
    std::uint32_t currentDesktop = 0;
    std::vector<PixelRect> workareas; // by virtual desktop
    std::optional<std::pair<int, int>> pointer;
    std::pair<int, int> rootSize; // width and height
    std::vector<PixelRect> displayRects;

    void markStale(ClientWindow& client, std::uint32_t bits);
    /// Clears the bits and returns those that were set.
    std::uint32_t takeStale(ClientWindow& client, std::uint32_t bits = stale::all);
    const std::vector<PropertyRule>& rules() const { return rules_; }

  private:
    /// Keeps the window's position in the stacking order if it has one.
    void setTopLevel(xcb_window_t window, const TopLevel& topLevel);
    EventEffects applyCreation(const xcb_create_notify_event_t& event, std::uint32_t sequence);
    EventEffects applyProperty(const xcb_property_notify_event_t& event);
    EventEffects applyConfigure(const xcb_configure_notify_event_t& event, std::uint32_t sequence);
    EventEffects applyMapping(xcb_window_t topLevel, bool isMapped, std::uint32_t sequence);
    EventEffects applyWithdrawal(xcb_window_t window);
    void adoptMapped();
    void startSettling(Seconds now);
    EventEffects applyReparent(const xcb_reparent_notify_event_t& event);
    EventEffects removeTopLevel(xcb_window_t window);
    EventEffects applyFocus(xcb_window_t window, bool gained, std::uint32_t sequence);
    void placeInStack(xcb_window_t window, xcb_window_t below);
    bool hasRoomInside(const ClientWindow& client) const;

    const Atoms& atoms_;
    xcb_window_t root_;
    std::vector<PropertyRule> rules_;
    std::optional<std::uint8_t> randrEventBase_;
    WindowManager manager_;
    bool isManagerKnown_ = false;
    std::optional<Seconds> settlesAt_; // uptime at which the settling ends; absent if no end is set
    std::optional<Seconds> managerChangedAt_;
    bool isManagerChangePending_ = false; // the window manager has changed, and the desktop has not settled since then
    std::uint64_t settledManagerChanges_ = 0;
    bool isReleasingWindows_ = false; // a managed window left its frame since the last poll
    std::unordered_map<xcb_window_t, TopLevel> topLevels_;
    std::vector<xcb_window_t> stacking_;
    std::vector<xcb_window_t> unknownTopLevels_;
    std::unordered_map<xcb_window_t, ClientWindow> clients_;
    std::unordered_map<xcb_window_t, xcb_window_t> clientByTopLevel_;
    std::vector<xcb_window_t> order_;
    std::unordered_map<pid_t, std::vector<xcb_window_t>> windowsByProcess_;
    std::optional<std::uint32_t> focusEventSequence_; // sequence number of the last focus event or KOVA's last request
};

} // namespace kova::x11
