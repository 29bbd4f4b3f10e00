// The model of the server's windows from which all reads are answered. Events update it: geometry, mapping and stacking
// are part of the events; a changed property is only marked stale and read by the next poll. It sends no requests and
// never waits. Not thread-safe: X11Parts guards it.
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
    PixelRect rect; // with its border
    int border = 0;
    bool isMapped = false;
    bool isOverrideRedirect = false;
    std::optional<std::uint32_t> rectEventSequence,
        mappingEventSequence; // sequence number of the last event about them
};

struct WindowManager {
    bool isPresent = false;             // one with a list of its windows
    bool publishesNoClientList = false; // publishes no list of clients, so frames cannot be distinguished from windows
    xcb_window_t checkWindow = kNoWindow;
    std::string name;
    bool movesAndResizes = false; // understands _NET_MOVERESIZE_WINDOW
    bool restacks = false;        // understands _NET_RESTACK_WINDOW
    bool announcesDecorations = false;
    bool announcesHidden = false; // sets _NET_WM_STATE_HIDDEN on minimized windows
    bool operator==(const WindowManager&) const = default;
};

/// What the caller has to do after an event.
struct EventEffects {
    bool changed = false; // a poll would see a change
    bool askActiveWindow = false;
    bool askDisplays = false;
    bool askScreenPower = false;
    bool askScale = false;
    bool panelsChanged = false;
    std::vector<xcb_window_t> redecorated; // their decorations changed
    std::vector<xcb_window_t> restated;    // their state changed under a window manager
    std::vector<xcb_window_t> returning;   // left as requested, and their return is requested by now
    void add(EventEffects&& other);
    bool isForMainThread() const {
        return askActiveWindow || askDisplays || askScreenPower || askScale || panelsChanged || !redecorated.empty() ||
               !restated.empty() || !returning.empty();
    }
};

class WindowModel {
  public:
    WindowModel(const Atoms& atoms, xcb_window_t root);

    // Events
    EventEffects apply(const xcb_generic_event_t& event);
    void setRandrEventBase(std::optional<std::uint8_t> base) { randrEventBase_ = base; }

    // Replies
    /// Uses the reply to the request with that sequence number. Values of later events are kept, and a window that was
    /// destroyed since stays unknown.
    void takeTopLevel(xcb_window_t window, const TopLevel& answer, std::uint32_t asked);
    void setStacking(std::vector<xcb_window_t> bottomFirst) { stacking_ = std::move(bottomFirst); }
    /// Sets the managed windows in their order; new ones are stale in everything, missing ones are dropped. While
    /// window managers change, the list is empty or short for a moment: until it has settled, missing windows are kept
    /// and requested, so that destroyed ones are noticed.
    void setClientList(const std::vector<xcb_window_t>& windows, Seconds now);
    void setWindowManager(const WindowManager& manager, Seconds now);
    /// Whether the window manager is changing, or has just changed. Then properties of the root are read at every poll,
    /// and a mapped window need not have been restored on request.
    bool isSettling() const { return isReleasingWindows_ || settlesAt_; }
    /// Whether the window manager has changed or ended within the duration.
    bool hasChangedHandsWithin(Seconds duration, Seconds now) const {
        return changedHandsAt_ && now - *changedHandsAt_ < duration;
    }
    /// Call at the beginning of a poll.
    void settle(Seconds now);
    void setTopLevelOf(ClientWindow& client, xcb_window_t topLevel);
    /// Without a window manager: adds a mapped top level that is an application's window to the list.
    void adoptUnmanaged(xcb_window_t window);
    /// Adds a window that a former agent hid to the list.
    void adoptIconified(xcb_window_t window);
    void forget(xcb_window_t client);
    /// Attributes the window to the process; the only place that does.
    void setOwner(ClientWindow& client, pid_t process);
    /// From _NET_FRAME_EXTENTS, requested by the main thread. A window in a frame must be measured after that.
    void takeDecorations(ClientWindow& client, const PropertyView& extents, std::uint32_t asked);
    /// Sets how far the window's area lies inside the window manager's frame.
    void takeMeasuredFrame(ClientWindow& client, const PixelEdges& around, std::uint32_t asked);
    /// Without a window manager: the focused window, and the root's child under the pointer, which is focused when the
    /// focus follows the pointer.
    void takeFocus(xcb_window_t focus, xcb_window_t underPointer, std::uint32_t asked);
    /// Without a window manager: the request gives the window the focus, which older events do not contradict.
    void noteFocusRequest(xcb_window_t window, std::uint32_t request);
    /// From WM_STATE or _NET_WM_STATE.
    void takeState(ClientWindow& client, const PropertyRule& rule, const PropertyView& value, std::uint32_t asked);

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
    /// The visible outer edge by the last events; absent while unknown. A frame that the window manager animates to or
    /// from a small size counts as it was before the animation.
    std::optional<PixelRect> outerFrame(const ClientWindow& client) const;
    /// The outer frame, or one requested within the last `maximumAge` that no event has confirmed yet. Events of an
    /// animated frame do not count as confirmation.
    std::optional<PixelRect> expectedFrame(const ClientWindow& client, Seconds now, Seconds maximumAge) const;
    /// By the window manager; without one only KOVA iconifies, and the window's own property is ignored. Windows of
    /// other desktops and shaded ones, which may be iconic, are not minimized.
    bool isMinimized(const ClientWindow& client) const;
    /// Mapped, not iconified; on any virtual desktop.
    bool isShown(const ClientWindow& client) const;
    /// The virtual desktop of the window; absent when it is on all of them, or without a window manager, since the
    /// properties of a former one are out of date.
    std::optional<std::uint32_t> desktopOf(const ClientWindow& client) const;
    bool isOnCurrentDesktop(const ClientWindow& client) const;
    bool isFullScreen(const ClientWindow& client) const;
    /// The window to which a dialog belongs, of the same application: the one in WM_TRANSIENT_FOR, else for a modal
    /// dialog the topmost of its group. Null for other windows.
    const ClientWindow* parentOf(const ClientWindow& client) const;
    /// The window's dialogs, and their dialogs, each once.
    std::vector<xcb_window_t> dialogsOf(const ClientWindow& client) const;
    const WindowManager& windowManager() const { return manager_; }

    /// Whether a change was announced that was not read yet.
    bool isStale() const;
    /// Children of the root that were reparented there, so that no event has reported their size. The list is empty
    /// afterwards.
    std::vector<xcb_window_t> takeUnknownTopLevels() { return std::exchange(unknownTopLevels_, {}); }

    // State of the whole desktop, set by ModelRefresh.
    std::uint32_t staleClients = 0; // how many clients have stale bits
    bool staleClientList = true;
    bool staleManager = true;
    bool staleDesktop = true;
    bool staleWorkarea = true;
    bool ownersChanged = false;   // a window was added or removed, not handled yet
    bool hasChangedHands = false; // the window manager changed or ended, not handled yet
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
    void setTopLevel(xcb_window_t window,
                     const TopLevel& topLevel); // keeps its position in the stacking order if known
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
    std::optional<Seconds> settlesAt_;
    std::optional<Seconds> changedHandsAt_;
    bool isReleasingWindows_ = false; // a managed window was taken out of its frame; until the next poll
    std::unordered_map<xcb_window_t, TopLevel> topLevels_;
    std::vector<xcb_window_t> stacking_;
    std::vector<xcb_window_t> unknownTopLevels_;
    std::unordered_map<xcb_window_t, ClientWindow> clients_;
    std::unordered_map<xcb_window_t, xcb_window_t> clientByTopLevel_;
    std::vector<xcb_window_t> order_;
    std::unordered_map<pid_t, std::vector<xcb_window_t>> windowsByProcess_;
    std::optional<std::uint32_t> focusEventSequence_; // sequence number of the last event or own request about it
};

} // namespace kova::x11
