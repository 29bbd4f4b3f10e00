// The picture of the server's windows that every read is answered from. Events keep it: geometry, mapping and stacking
// are carried by the events themselves; a changed property is only marked stale and looked into by the next poll.
// It sends nothing and waits for nothing. Not safe for several threads by itself: X11Parts guards it.
//
// Only the root's children announce geometry. A decorated window is found through the frame that holds it, whose
// margins around the visible edge were measured once, so that moving a window costs one event and no question.
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
    std::optional<std::uint32_t> rectTold, mappingTold; // by which event they were told last
};

struct WindowManager {
    bool isPresent = false; // one that keeps a list of its windows
    bool isMute = false;    // one that keeps none: its windows cannot be told from what it draws
    xcb_window_t checkWindow = kNoWindow;
    std::string name;
    bool movesAndResizes = false; // understands _NET_MOVERESIZE_WINDOW
    bool restacks = false;        // understands _NET_RESTACK_WINDOW
    bool announcesDecorations = false;
    bool announcesHidden = false; // says by _NET_WM_STATE_HIDDEN which windows are minimised
    bool operator==(const WindowManager&) const = default;
};

/// What has to be done after an event, beyond what the model did itself.
struct EventEffects {
    bool changed = false; // a poll would see something new
    bool askActiveWindow = false;
    bool askDisplays = false;
    bool askScreenPower = false;
    bool askScale = false;
    bool panelsChanged = false;
    std::vector<xcb_window_t> redecorated; // announced other decorations
    std::vector<xcb_window_t> restated;    // announced another state under a window manager
    std::vector<xcb_window_t> returning;   // went as asked, and are wanted back by now
    void add(EventEffects&& other);
    bool isForMainThread() const {
        return askActiveWindow || askDisplays || askScreenPower || askScale || panelsChanged || !redecorated.empty() ||
               !restated.empty() || !returning.empty();
    }
};

class WindowModel {
  public:
    WindowModel(const Atoms& atoms, xcb_window_t root);

    // What the server announces
    EventEffects apply(const xcb_generic_event_t& event);
    void setRandrEventBase(std::optional<std::uint8_t> base) { randrEventBase_ = base; }

    // What was asked
    /// What the server answered to a question of that number. What an event has told since is newer, and a window that
    /// has gone meanwhile stays gone.
    void takeTopLevel(xcb_window_t window, const TopLevel& answer, std::uint32_t asked);
    void setStacking(std::vector<xcb_window_t> bottomFirst) { stacking_ = std::move(bottomFirst); }
    /// The managed windows in their order; those that are new are stale in everything, those that left are forgotten.
    /// While one manager leaves and the next comes, the list is empty or short for a moment: until they have settled,
    /// the windows that are missing in it stay, and are asked about, so that those that have gone are found out.
    void setClientList(const std::vector<xcb_window_t>& windows, Seconds now);
    void setWindowManager(const WindowManager& manager, Seconds now);
    /// Whether a manager is going, or has just gone or come. What the root says is then stale again at every poll, and
    /// that a window is on the screen does not mean that it was asked to be there.
    bool isSettling() const { return isLettingGo_ || settlesAt_; }
    /// Whether another manager came, or the last one went, within the duration.
    bool hasChangedHandsWithin(Seconds duration, Seconds now) const {
        return changedHandsAt_ && now - *changedHandsAt_ < duration;
    }
    /// At the beginning of a poll.
    void settle(Seconds now);
    void setTopLevelOf(ClientWindow& client, xcb_window_t topLevel);
    /// Without a window manager: a mapped top level that a user can work with joins the list.
    void adoptUnmanaged(xcb_window_t window);
    /// The same with one that an agent before this one took off the screen.
    void adoptIconified(xcb_window_t window);
    void forget(xcb_window_t client);
    /// Attributes the window to the process; the only place that does.
    void setOwner(ClientWindow& client, pid_t process);
    /// From _NET_FRAME_EXTENTS, asked by the main thread. A window in a frame has to be measured after that.
    void takeDecorations(ClientWindow& client, const PropertyView& extents, std::uint32_t asked);
    /// How far the window's area lies inside the frame that holds it.
    void takeMeasuredFrame(ClientWindow& client, const PixelEdges& around, std::uint32_t asked);
    /// Without a window manager: the window that has the keyboard, and the root's child under the pointer, which has it
    /// when it follows that.
    void takeFocus(xcb_window_t focus, xcb_window_t underPointer, std::uint32_t asked);
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
    /// The client that the root's child holds; null for what holds none.
    const ClientWindow* clientIn(xcb_window_t topLevel) const;
    /// The visible outer edge as the server last told; absent while unknown. Frames that are drawn small for show, on
    /// their way out and in, count as they were before.
    std::optional<PixelRect> outerFrame(const ClientWindow& client) const;
    /// The same, or what was asked for within the last `patience` and is not answered yet; while a frame is drawn small
    /// it cannot answer.
    std::optional<PixelRect> expectedFrame(const ClientWindow& client, Seconds now, Seconds patience) const;
    /// As the window manager tells; without one only we can iconify, and what the window says of itself means nothing.
    /// Windows of other desktops and shaded ones, which may be iconic for the manager, are not minimised.
    bool isMinimized(const ClientWindow& client) const;
    /// Mapped, not iconified; on any virtual desktop.
    bool isShown(const ClientWindow& client) const;
    /// The virtual desktop of the window; absent when it is on all of them, or without a window manager, as what is
    /// left of its words once it has gone means nothing.
    std::optional<std::uint32_t> desktopOf(const ClientWindow& client) const;
    bool isOnCurrentDesktop(const ClientWindow& client) const;
    bool isFullScreen(const ClientWindow& client) const;
    /// The window of the same application that a dialog belongs to: the one that it names, or, when it is modal and
    /// names none that is listed, the topmost of its group. Null for every other window.
    const ClientWindow* parentOf(const ClientWindow& client) const;
    /// Its dialogs, and theirs, each once.
    std::vector<xcb_window_t> dialogsOf(const ClientWindow& client) const;
    const WindowManager& windowManager() const { return manager_; }

    /// Whether anything was announced that was not asked about yet.
    bool isStale() const;
    /// Children of the root that came from elsewhere, so that nothing told their size; they are known afterwards.
    std::vector<xcb_window_t> takeUnknownTopLevels() { return std::exchange(unknownTopLevels_, {}); }

    // State of the whole desktop; written by those that ask the server.
    std::uint32_t staleClients = 0; // how many clients have stale bits
    bool staleClientList = true;
    bool staleManager = true;
    bool staleDesktop = true;
    bool staleWorkarea = true;
    bool ownersChanged = false;   // a window joined or left, and that was not acted on yet
    bool hasChangedHands = false; // another window manager, or none any more; not acted on yet
    xcb_window_t activeWindow = kNoWindow;
    std::uint32_t currentDesktop = 0;
    std::vector<PixelRect> workareas; // by virtual desktop
    std::optional<std::pair<int, int>> pointer;
    std::pair<int, int> rootSize; // width and height
    std::vector<PixelRect> displayRects;

    void markStale(ClientWindow& client, std::uint32_t bits);
    /// The bits, which are then fresh.
    std::uint32_t takeStale(ClientWindow& client, std::uint32_t bits = stale::all);
    const std::vector<PropertyRule>& rules() const { return rules_; }

  private:
    void setTopLevel(xcb_window_t window, const TopLevel& topLevel); // keeps the place in the stack when known
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
    bool isLettingGo_ = false; // a managed window has left its frame; until the next poll begins
    std::unordered_map<xcb_window_t, TopLevel> topLevels_;
    std::vector<xcb_window_t> stacking_;
    std::vector<xcb_window_t> unknownTopLevels_;
    std::unordered_map<xcb_window_t, ClientWindow> clients_;
    std::unordered_map<xcb_window_t, xcb_window_t> clientByTopLevel_;
    std::vector<xcb_window_t> order_;
    std::unordered_map<pid_t, std::vector<xcb_window_t>> windowsByProcess_;
    std::optional<std::uint32_t> focusTold_; // by which event it was told last
};

} // namespace kova::x11
